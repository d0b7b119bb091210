precision mediump float;

uniform mediump mat4 uMVPMatrix;
attribute vec4 aPosition;
attribute vec2 aTexUV;
varying vec2 vTexUV;

void main() {
    vTexUV = aTexUV;
    gl_Position = uMVPMatrix * aPosition;
}
