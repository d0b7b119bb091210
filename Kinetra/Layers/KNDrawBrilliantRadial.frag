precision lowp float;

uniform sampler2D uAlphaMap;
uniform sampler2D uPatternMap;
uniform float uTimeStep;
varying vec2 vTexUV;
varying vec2 vScreenUV;
varying vec2 vPatternUV;

void main() {
    vec2 N = vTexUV * 2.0 - 1.0;
    float mag = dot(N, N);
    // Only the disc inscribed in the quad.
    if (mag > 1.0) {
        discard;
    }
    // The aspect of a 16:9 screen.
    N.y *= 0.5625;
    N = (N * uTimeStep + 1.0) * 0.5;
    float alpha1 = texture2D(uAlphaMap, vScreenUV).r;
    float alpha2 = texture2D(uPatternMap, vPatternUV).a;
    gl_FragColor = vec4(N.x, N.y, alpha1 * alpha2, uTimeStep);
}
