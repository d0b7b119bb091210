precision mediump float;

uniform vec4 uColor;
uniform sampler2D uTexA;
uniform sampler2D uTexB;
// 0: the renderer colour; 1: red from uTexA, green from uTexB.
uniform float uTextureMix;
// Both 0 unless a test sets them: blue gains uBlue.x * uBlue.y, the colour gains uExtra[1].
uniform vec2 uBlue;
uniform vec4 uExtra[2];
varying vec2 vTexUV;

void main() {
    vec4 textured = vec4(texture2D(uTexA, vTexUV).r, texture2D(uTexB, vTexUV).g, 0.0, 1.0);
    gl_FragColor = mix(uColor, textured, uTextureMix) + vec4(0.0, 0.0, uBlue.x * uBlue.y, 0.0) +
                   uExtra[1];
}
