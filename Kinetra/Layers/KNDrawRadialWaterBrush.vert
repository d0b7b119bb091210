precision mediump float;

uniform mat4 uMVPMatrix;
attribute vec4 aPosition;
attribute vec3 aTexUV;
varying vec2 vTexUV;
varying vec2 vPosition;

void main() {
    vTexUV = aTexUV.st;
    vPosition = aPosition.xy;
    gl_Position = uMVPMatrix * aPosition;
}
