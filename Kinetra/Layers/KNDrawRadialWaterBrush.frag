precision mediump float;

uniform sampler2D uMask;
uniform sampler2D uTube;
uniform float uTimeStep;
uniform float uCenterX;
uniform float uCenterY;
uniform float uInvScreenX;
uniform float uInvScreenY;
uniform float uPow;
uniform float uMultiply;
uniform float uAlpha;
uniform float uXRatio;
uniform float uYRatio;
varying vec2 vTexUV;
varying vec2 vPosition;

void main() {
    vec4 maskColor = texture2D(uMask, vTexUV);
    vec4 tubeColor = texture2D(uTube, vTexUV);
    vec2 direction = vec2(uCenterX - vPosition.x, uCenterY - vPosition.y);
    vec2 radial = normalize(direction) * 0.1;
    radial.x *= uXRatio;
    radial.y *= uYRatio;
    radial += 0.5;
    gl_FragColor = vec4(radial.x, radial.y, uTimeStep * tubeColor.r,
                        maskColor.a * clamp(1.0 - uAlpha, 0.0, 1.0));
}
