precision mediump float;

uniform sampler2D uMask;
uniform float uTimeStep;
uniform float uCenterX;
uniform float uCenterY;
uniform float uAlpha;
uniform vec2 uScreenRatio;
varying vec2 vTexUV;
varying vec2 vPosition;

void main() {
    vec4 maskColor = texture2D(uMask, vTexUV);
    vec2 direction = vec2(uCenterX - vPosition.x, uCenterY - vPosition.y);
    float l = length(direction);
    vec2 radial;
    // A soft core: the field fades linearly to nothing at the centre.
    if (l <= 20.0) {
        radial = normalize(direction) * 0.1 * l / 20.0;
    } else {
        radial = normalize(direction) * 0.1;
    }
    radial *= uScreenRatio;
    radial += 0.5;
    gl_FragColor = vec4(radial.x, radial.y, uTimeStep, maskColor.a * clamp(1.0 - uAlpha, 0.0, 1.0));
}
