#include "tests/support/TextureQuad.h"

#include <cstdio>
#include <cstdlib>

namespace qam::test {

TextureQuad::TextureQuad() {
    const char* sources[2] = {
        "attribute vec2 aPosition;\n"
        "varying vec2 vCoord;\n"
        "void main() {\n"
        "    vCoord = aPosition * 0.5 + 0.5;\n"
        "    gl_Position = vec4(aPosition, 0.0, 1.0);\n"
        "}\n",
        "precision highp float;\n"
        "uniform sampler2D uTexture;\n"
        "varying vec2 vCoord;\n"
        "void main() { gl_FragColor = texture2D(uTexture, vCoord); }\n"};
    mProgram = glCreateProgram();
    for (int i = 0; i < 2; ++i) {
        const GLuint shader = glCreateShader(i == 0 ? GL_VERTEX_SHADER : GL_FRAGMENT_SHADER);
        glShaderSource(shader, 1, &sources[i], nullptr);
        glCompileShader(shader);
        GLint ok = 0;
        glGetShaderiv(shader, GL_COMPILE_STATUS, &ok);
        if (!ok) {
            fprintf(stderr, "TextureQuad: shader does not compile\n");
            abort();
        }
        glAttachShader(mProgram, shader);
        glDeleteShader(shader);  // goes with the program
    }
    glLinkProgram(mProgram);
    mSampler = glGetUniformLocation(mProgram, "uTexture");
    mPosition = glGetAttribLocation(mProgram, "aPosition");
}

TextureQuad::~TextureQuad() {
    glDeleteProgram(mProgram);
}

void TextureQuad::use() const {
    glUseProgram(mProgram);
}

void TextureQuad::draw() const {
    static const float kQuad[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    glUseProgram(mProgram);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glEnableVertexAttribArray(mPosition);
    glVertexAttribPointer(mPosition, 2, GL_FLOAT, GL_FALSE, 0, kQuad);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisableVertexAttribArray(mPosition);
}

}  // namespace qam::test
