uniform mat4 uMVPMatrix;
attribute vec4 aPosition;
attribute vec2 aTexUV;
attribute vec2 aScreenUV;
attribute vec2 aPatternUV;
varying vec2 vTexUV;
varying vec2 vScreenUV;
varying vec2 vPatternUV;

void main() {
    vTexUV = aTexUV;
    vScreenUV = aScreenUV;
    vPatternUV = aPatternUV;
    gl_Position = uMVPMatrix * aPosition;
}
