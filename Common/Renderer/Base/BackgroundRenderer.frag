precision mediump float;
uniform sampler2D uTexture; uniform float uOpacity; varying vec2 vTextureCoord; void main() { gl_FragColor = texture2D(uTexture, vTextureCoord); }