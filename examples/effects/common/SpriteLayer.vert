uniform mat4 uMVPMatrix;
attribute vec4 aPosition;
attribute vec3 aTexUV;
varying vec2 vTexUV;

void main() {
    vTexUV = aTexUV.st;
    gl_Position = uMVPMatrix * aPosition;
}
