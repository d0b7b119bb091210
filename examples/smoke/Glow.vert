attribute vec2 aPosition;
varying vec2 vCoord;

void main() {
    vCoord = aPosition * 0.5 + 0.5;
    gl_Position = vec4(aPosition, 0.0, 1.0);
}
