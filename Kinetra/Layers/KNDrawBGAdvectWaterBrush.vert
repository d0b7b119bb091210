uniform mediump mat4 uMVPMatrix;
attribute vec4 aPosition;
attribute vec3 aTexUV;
attribute vec3 aTexUVBG;
varying vec2 vTexUV;
varying vec2 vTexUVBG;

void main() {
    // Texture (0, 0) on the bottom-left vertex, for both sets.
    vTexUV = vec2(aTexUV.x, 1.0 - aTexUV.y);
    vTexUVBG = vec2(aTexUVBG.x, 1.0 - aTexUVBG.y);
    gl_Position = uMVPMatrix * aPosition;
}
