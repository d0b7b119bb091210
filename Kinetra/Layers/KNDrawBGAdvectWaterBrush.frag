precision mediump float;

uniform sampler2D uTexMap;
uniform sampler2D uVelocity;
uniform sampler2D uRadial;
uniform sampler2D uOriginal;
uniform sampler2D uAlpha;
uniform float uNoiseVectorScalar;
uniform float uRadialVectorScalar;
varying highp vec2 vTexUV;
varying vec2 vTexUVBG;

void main() {
    vec4 alphaColor = texture2D(uRadial, vTexUV);
    vec4 texColor;
    if (alphaColor.a != 0.0) {
        // The noise is fixed to the background, not to the layer.
        highp vec4 noiseVelocity = texture2D(uVelocity, vTexUVBG);
        // Red and green: a direction biased by 0.5; blue: its strength.
        highp vec2 densityUV = vTexUV + ((alphaColor.xy - 0.5) * 10.0 * uRadialVectorScalar +
                                         (noiseVelocity.xy - 0.5) * uNoiseVectorScalar) *
                                            alphaColor.b * 0.0175 * 0.006;
        // 3 % a frame back towards the background.
        texColor = mix(texture2D(uTexMap, densityUV), texture2D(uOriginal, vTexUVBG), 0.03);
    } else {
        texColor = texture2D(uOriginal, vTexUVBG);
    }
    gl_FragColor = texColor;
}
