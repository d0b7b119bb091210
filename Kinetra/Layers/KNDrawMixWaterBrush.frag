precision mediump float;

uniform sampler2D uTexMap;
uniform sampler2D uDensity;
uniform sampler2D uAlpha;
uniform float uSaturation;
uniform float uBrightness;
uniform float uRedSaturation;
uniform float uGreenSaturation;
uniform float uBlueSaturation;
varying vec2 vTexUV;
varying vec2 vTexUVBG;

void main() {
    vec4 texColor = texture2D(uTexMap, vTexUVBG);
    vec4 densityColor = texture2D(uDensity, vTexUV) * uBrightness;
    // Saturation about a grey level weighted per channel.
    float p = sqrt(densityColor.r * densityColor.r * uRedSaturation +
                   densityColor.g * densityColor.g * uGreenSaturation +
                   densityColor.b * densityColor.b * uBlueSaturation);
    densityColor.rgb = p + (densityColor.rgb - p) * uSaturation;
    float a = texture2D(uAlpha, vTexUV).a;
    gl_FragColor = mix(texColor, densityColor, a);
}
