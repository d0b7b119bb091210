uniform mediump mat4 uMVPMatrix;
attribute vec4 aPosition;
attribute vec3 aTexUV;
varying vec2 vTexUV;

void main() {
    // Unflipped: texture row v = 1 lands on the bottom vertices.
    vTexUV = aTexUV.st;
    gl_Position = uMVPMatrix * aPosition;
}
