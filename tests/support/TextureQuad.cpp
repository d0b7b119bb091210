#include "tests/support/TextureQuad.h"

#include <cstdio>
#include <cstdlib>

namespace qam::test {
namespace {

const char* const kVertex =
    "attribute vec2 aPosition;\n"
    "varying vec2 vCoord;\n"
    "void main() {\n"
    "    vCoord = aPosition * 0.5 + 0.5;\n"
    "    gl_Position = vec4(aPosition, 0.0, 1.0);\n"
    "}\n";
const char* const kFragment =
    "precision highp float;\n"
    "uniform sampler2D uTexture;\n"
    "varying vec2 vCoord;\n"
    "void main() { gl_FragColor = texture2D(uTexture, vCoord); }\n";

GLuint compile(GLenum type, const char* source) {
    GLuint shader = glCreateShader(type);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint ok = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &ok);
    if (!ok) {
        fprintf(stderr, "TextureQuad: shader does not compile\n");
        abort();
    }
    return shader;
}

}  // namespace

TextureQuad::TextureQuad() {
    mProgram = glCreateProgram();
    const GLuint vertex = compile(GL_VERTEX_SHADER, kVertex);
    const GLuint fragment = compile(GL_FRAGMENT_SHADER, kFragment);
    glAttachShader(mProgram, vertex);
    glAttachShader(mProgram, fragment);
    glLinkProgram(mProgram);
    glDeleteShader(vertex);
    glDeleteShader(fragment);
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
