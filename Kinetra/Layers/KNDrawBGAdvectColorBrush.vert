uniform mediump mat4 uMVPMatrix;
attribute vec4 aPosition;
attribute vec3 aTexUV;
varying vec2 vTexUV;

void main() {
    // Texture (0, 0) on the bottom-left vertex: frame-buffer textures are stored bottom-up.
    vTexUV = vec2(aTexUV.x, 1.0 - aTexUV.y);
    gl_Position = uMVPMatrix * aPosition;
}
