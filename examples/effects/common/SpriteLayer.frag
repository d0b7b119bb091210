precision mediump float;

uniform sampler2D uTexMap;
uniform vec4 uColor;
uniform float uTextureAlpha;
varying vec2 vTexUV;

void main() {
    vec4 texel = texture2D(uTexMap, vTexUV);
    gl_FragColor = vec4(texel.rgb, mix(1.0, texel.a, uTextureAlpha)) * uColor;
}
