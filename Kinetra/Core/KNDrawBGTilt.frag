precision mediump float;
precision mediump float;

uniform sampler2D uCurrTexMap;
uniform sampler2D uNextTexMap;
uniform float uAlphaScale;
varying vec2 vTexUV;

void main() {
    vec3 currColor = texture2D(uCurrTexMap, vTexUV).rgb;
    vec3 nextColor = texture2D(uNextTexMap, vTexUV).rgb;
    gl_FragColor = vec4(mix(nextColor, currColor, uAlphaScale), 1.0);
}
