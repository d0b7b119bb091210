precision mediump float;

uniform sampler2D uTexMap;
uniform sampler2D uDensity;
uniform sampler2D uAlpha;
uniform sampler2D uColorDensity;
uniform float uAlphaRatio;
uniform float uBrightRatio;
uniform float uSaturation;
uniform float uBrightness;
uniform float uRedSaturation;
uniform float uGreenSaturation;
uniform float uBlueSaturation;
varying vec2 vTexUV;

void main() {
    vec4 texColor = texture2D(uTexMap, vTexUV);
    vec4 alphaColor = texture2D(uAlpha, vTexUV);
    vec4 densityColor = mix(texture2D(uDensity, vTexUV), texture2D(uColorDensity, vTexUV),
                            alphaColor.a) *
                        uBrightness;
    // The grey level weighs all three channels with the red weight alone.
    float p = sqrt((densityColor.r * densityColor.r + densityColor.g * densityColor.g +
                    densityColor.b * densityColor.b) *
                   uRedSaturation);
    densityColor.rgb = p + (densityColor.rgb - p) * uSaturation;
    float weight = pow(alphaColor.a, 4.0) * 0.95;
    gl_FragColor = mix(texColor, densityColor, weight);
    gl_FragColor.a = uAlphaRatio;
}
