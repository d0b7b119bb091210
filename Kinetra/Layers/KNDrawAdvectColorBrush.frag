precision mediump float;

uniform sampler2D uTexMap;
uniform sampler2D uVelocity;
uniform sampler2D uRadial;
uniform sampler2D uOriginal;
uniform sampler2D uRadialColor;
uniform sampler2D uBackground;
uniform sampler2D uAlpha;
uniform float uNoiseVectorScalar;
uniform float uRadialVectorScalar;
uniform float uInvScreenX;
uniform float uInvScreenY;
varying vec2 vTexUV;

void main() {
    vec2 fragCoord = vec2(gl_FragCoord.x * uInvScreenX, gl_FragCoord.y * uInvScreenY);
    vec4 alphaColor = texture2D(uRadial, vTexUV);
    vec4 radialColor = texture2D(uRadialColor, vTexUV);
    vec4 originalColor = texture2D(uOriginal, vTexUV);
    vec4 backgroundColor = texture2D(uBackground, fragCoord);
    vec4 texColor;
    if (alphaColor.a != 0.0) {
        // Red and green: a direction biased by 0.5; blue: its strength.
        vec4 noiseVelocity = texture2D(uVelocity, vTexUV);
        vec2 densityUV = vTexUV + ((alphaColor.xy - 0.5) * 10.0 * uRadialVectorScalar +
                                   (noiseVelocity.xy - 0.5) * uNoiseVectorScalar) *
                                      alphaColor.b * 0.0021;
        if (radialColor.a != 0.0) {
            radialColor.rgb = radialColor.rgb + radialColor.rgb * (1.0 - radialColor.a);
        }
        texColor = mix(mix(texture2D(uTexMap, densityUV), originalColor, 0.0075), radialColor,
                       radialColor.a);
    } else {
        texColor = mix(originalColor, backgroundColor, 0.6);
    }
    gl_FragColor = texColor;
}
