uniform mediump mat4 uMVPMatrix;
attribute vec4 aPosition;
attribute vec3 aTexUV;
attribute vec3 aTexUVBG;
varying vec2 vTexUV;
varying vec2 vTexUVBG;

void main() {
    // Unflipped: texture row v = 1 on the bottom vertices.
    vTexUV = aTexUV.st;
    vTexUVBG = aTexUVBG.st;
    gl_Position = uMVPMatrix * aPosition;
}
