precision mediump float;

uniform vec4 uColor;
uniform sampler2D uTexMap;
varying vec2 vTexUV;

void main() {
    gl_FragColor = texture2D(uTexMap, vTexUV) * uColor;
}
