precision mediump float;
attribute vec2 aPosition; attribute vec2 aTextureCoords; varying vec2 vTextureCoord; void main() { vTextureCoord = aTextureCoords; gl_Position = vec4(aPosition, 0.0, 1.0); }