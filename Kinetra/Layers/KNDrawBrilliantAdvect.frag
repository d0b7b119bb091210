precision lowp float;

uniform sampler2D uRadialVelocity;
uniform float offset[8];
uniform float weight[8];
varying vec2 vTexUV;

void main() {
    vec4 current = texture2D(uRadialVelocity, vTexUV);
    // (0.5, 0.5) encodes no direction: nothing to smear.
    if (current.x == 0.5 && current.y == 0.5) {
        discard;
    }
    vec2 velocity = current.xy * 2.0 - 1.0;
    vec4 TexColor = vec4(current.z / current.a) * weight[0];
    // The streak runs against the direction, up to 7 * 0.008 of the texture.
    for (int i = 1; i < 8; i++) {
        vec4 tap = texture2D(uRadialVelocity, vTexUV + (-velocity * 0.02 * offset[i] * 0.4));
        TexColor += vec4(tap.z / tap.a) * weight[i];
    }
    gl_FragColor = TexColor;
}
