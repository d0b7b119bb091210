precision lowp float;

uniform sampler2D uBackgroundMap;
uniform sampler2D uShineMap;
uniform sampler2D uDiamondMap;
uniform sampler2D uAlphaMap;
uniform sampler2D uBlurMap;
uniform float uAlpha;
varying highp vec2 vTexUV;
varying vec2 vTabScaledUV;
varying vec2 vTexUVBg;

// Branch-free RGB to HSV; e keeps grey (d = 0) and black (q.x = 0) finite.
vec3 rgbToHsv(vec3 c) {
    vec4 K = vec4(0.0, -0.333333333, 0.666666666, -1.0);
    vec4 p = mix(vec4(c.b, c.g, K.w, K.z), vec4(c.g, c.b, K.x, K.y), step(c.b, c.g));
    vec4 q = mix(vec4(p.x, p.y, p.w, c.r), vec4(c.r, p.y, p.z, p.x), step(p.x, c.r));
    float d = q.x - min(q.w, q.y);
    float e = 1.0e-10;
    return vec3(abs(q.z + (q.w - q.y) / (6.0 * d + e)), d / (q.x + e), q.x);
}

vec3 hsvToRgb(vec3 c) {
    vec4 K = vec4(1.0, 0.666666666, 0.333333333, 3.0);
    vec3 p = abs(fract(c.xxx + K.xyz) * 6.0 - K.www);
    return c.z * mix(K.xxx, clamp(p - K.xxx, 0.0, 1.0), c.y);
}

void main() {
    vec3 bgColor = texture2D(uBackgroundMap, vTexUVBg).rgb;
    float shineColor = texture2D(uShineMap, vTexUV).r;
    // The diamond image alone is read upside down.
    vec4 diamondColor = texture2D(uDiamondMap, vec2(vTexUV.x, 1.0 - vTexUV.y));
    float alpha = clamp(diamondColor.z / diamondColor.a + shineColor, 0.0, 1.0);
    vec3 rgb;
    if (alpha != 0.0) {
        float alphaColor = texture2D(uAlphaMap, vTexUV).r;
        float blurColor = texture2D(uBlurMap, vTexUV).r;
        vec3 bgScaledColor = texture2D(uBackgroundMap, vTabScaledUV).rgb;
        vec3 hsv = rgbToHsv(bgScaledColor);
        hsv.x -= 0.027;
        // Saturated dark colours are pushed beyond full saturation on purpose.
        if (hsv.y > 0.85 && hsv.z < 0.7) {
            hsv.y = 1.4;
            hsv.z *= 1.3;
        }
        vec3 convertedRGB = hsvToRgb(hsv);
        rgb = mix(bgColor, convertedRGB, alphaColor) + blurColor + alpha;
    } else {
        rgb = bgColor;
    }
    gl_FragColor = vec4(rgb, uAlpha);
}
