precision mediump float;

uniform sampler2D uTexMap;
uniform sampler2D uVelocity;
uniform sampler2D uRadial;
uniform sampler2D uOriginal;
uniform sampler2D uAlpha;
uniform float uNoiseVectorScalar;
uniform float uRadialVectorScalar;
varying vec2 vTexUV;

void main() {
    vec4 alphaColor = texture2D(uRadial, vTexUV);
    vec4 texColor;
    if (alphaColor.a != 0.0) {
        // Red and green: a direction biased by 0.5; blue: its strength.
        vec4 noiseVelocity = texture2D(uVelocity, vTexUV);
        vec2 densityUV = vTexUV + ((alphaColor.xy - 0.5) * 10.0 * uRadialVectorScalar +
                                   (noiseVelocity.xy - 0.5) * uNoiseVectorScalar) *
                                      alphaColor.b * 0.0175 * 0.006;
        // A weight of 0: the advected previous frame as it is.
        texColor = mix(texture2D(uTexMap, densityUV), texture2D(uOriginal, densityUV), 0.0);
    } else {
        texColor = texture2D(uOriginal, vTexUV);
    }
    gl_FragColor = texColor;
}
