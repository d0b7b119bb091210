uniform mat4 uMVPMatrix;
attribute vec4 aPosition;
attribute vec2 aTexUV;
varying vec2 vTexUV;

void main() {
    vTexUV = vec2(aTexUV.x, aTexUV.y);
    gl_Position = uMVPMatrix * aPosition;
}
