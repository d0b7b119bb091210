precision mediump float;

uniform sampler2D uGradient;
varying vec2 vCoord;

// A soft glow around the middle over the gradient texture.
void main() {
    float glow = 1.0 - smoothstep(0.0, 0.5, distance(vCoord, vec2(0.5)));
    vec3 base = texture2D(uGradient, vCoord).rgb;
    gl_FragColor = vec4(mix(base, vec3(1.0, 0.95, 0.8), glow * glow), 1.0);
}
