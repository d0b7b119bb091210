uniform mat4 uMVPMatrix;
attribute vec4 aPosition;
attribute vec2 aTexUV;
attribute vec2 aTabScaledUV;
attribute vec2 aTexUVBg;
varying vec2 vTexUV;
varying vec2 vTabScaledUV;
varying vec2 vTexUVBg;

void main() {
    vTexUV = aTexUV;
    vTabScaledUV = aTabScaledUV;
    vTexUVBg = aTexUVBg;
    gl_Position = uMVPMatrix * aPosition;
}
