precision mediump float;

uniform sampler2D uMask;
uniform sampler2D uColor;
uniform float uCenterX;
uniform float uCenterY;
uniform float uInvScreenX;
uniform float uInvScreenY;
varying vec2 vTexUV;

void main() {
    vec4 mask = texture2D(uMask, vTexUV);
    // The colour image is fixed to the screen, not to the moving mask.
    vec3 tc = texture2D(uColor, vec2(gl_FragCoord.x * uInvScreenX, gl_FragCoord.y * uInvScreenY)).rgb;
    gl_FragColor = vec4(tc, mask.a);
}
