#include "tests/support/GLCallCounter.h"

#include <GLES2/gl2.h>
#include <dlfcn.h>

#include <map>

namespace qam::test {
namespace {

std::map<std::string, int>& counts() {
    static std::map<std::string, int> all;
    return all;
}

template <typename Function>
Function real(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

GLCallCounter::GLCallCounter() {
    counts().clear();
}

int GLCallCounter::count(const std::string& function) const {
    const auto found = counts().find(function);
    return found == counts().end() ? 0 : found->second;
}

int GLCallCounter::total() const {
    int sum = 0;
    for (const auto& entry : counts()) {
        sum += entry.second;
    }
    return sum;
}

}  // namespace qam::test

#define QAM_COUNTED(Result, name, Parameters, arguments)                          \
    extern "C" __attribute__((visibility("default"))) Result name Parameters {    \
        static const auto forward = qam::test::real<Result(*) Parameters>(#name); \
        ++qam::test::counts()[#name];                                             \
        return forward arguments;                                                 \
    }

QAM_COUNTED(GLuint, glCreateProgram, (), ())
QAM_COUNTED(GLuint, glCreateShader, (GLenum type), (type))
QAM_COUNTED(void, glCompileShader, (GLuint shader), (shader))
QAM_COUNTED(void, glLinkProgram, (GLuint program), (program))
QAM_COUNTED(GLboolean, glIsProgram, (GLuint program), (program))
QAM_COUNTED(void, glUseProgram, (GLuint program), (program))
QAM_COUNTED(void, glGenTextures, (GLsizei n, GLuint* names), (n, names))
QAM_COUNTED(GLboolean, glIsTexture, (GLuint texture), (texture))
QAM_COUNTED(void, glBindTexture, (GLenum target, GLuint texture), (target, texture))
QAM_COUNTED(void, glTexImage2D,
            (GLenum target, GLint level, GLint internalFormat, GLsizei width, GLsizei height,
             GLint border, GLenum format, GLenum type, const void* pixels),
            (target, level, internalFormat, width, height, border, format, type, pixels))
QAM_COUNTED(void, glTexSubImage2D,
            (GLenum target, GLint level, GLint x, GLint y, GLsizei width, GLsizei height,
             GLenum format, GLenum type, const void* pixels),
            (target, level, x, y, width, height, format, type, pixels))
QAM_COUNTED(void, glCompressedTexImage2D,
            (GLenum target, GLint level, GLenum internalFormat, GLsizei width, GLsizei height,
             GLint border, GLsizei size, const void* data),
            (target, level, internalFormat, width, height, border, size, data))
QAM_COUNTED(void, glGenBuffers, (GLsizei n, GLuint* names), (n, names))
QAM_COUNTED(void, glBufferData, (GLenum target, GLsizeiptr size, const void* data, GLenum usage),
            (target, size, data, usage))
QAM_COUNTED(void, glBufferSubData,
            (GLenum target, GLintptr offset, GLsizeiptr size, const void* data),
            (target, offset, size, data))
QAM_COUNTED(void, glGenFramebuffers, (GLsizei n, GLuint* names), (n, names))
QAM_COUNTED(void, glBindFramebuffer, (GLenum target, GLuint framebuffer), (target, framebuffer))
QAM_COUNTED(void, glGenRenderbuffers, (GLsizei n, GLuint* names), (n, names))
QAM_COUNTED(void, glRenderbufferStorage,
            (GLenum target, GLenum format, GLsizei width, GLsizei height),
            (target, format, width, height))
QAM_COUNTED(void, glFramebufferRenderbuffer,
            (GLenum target, GLenum attachment, GLenum renderbufferTarget, GLuint renderbuffer),
            (target, attachment, renderbufferTarget, renderbuffer))
QAM_COUNTED(void, glFramebufferTexture2D,
            (GLenum target, GLenum attachment, GLenum textureTarget, GLuint texture, GLint level),
            (target, attachment, textureTarget, texture, level))
QAM_COUNTED(void, glViewport, (GLint x, GLint y, GLsizei width, GLsizei height),
            (x, y, width, height))
QAM_COUNTED(void, glDrawArrays, (GLenum mode, GLint first, GLsizei count), (mode, first, count))
QAM_COUNTED(void, glDrawElements, (GLenum mode, GLsizei count, GLenum type, const void* indices),
            (mode, count, type, indices))
QAM_COUNTED(void, glUniform1i, (GLint location, GLint value), (location, value))
QAM_COUNTED(void, glActiveTexture, (GLenum texture), (texture))
QAM_COUNTED(void, glEnable, (GLenum capability), (capability))
QAM_COUNTED(void, glDisable, (GLenum capability), (capability))
QAM_COUNTED(void, glBlendFuncSeparate,
            (GLenum srcRGB, GLenum dstRGB, GLenum srcAlpha, GLenum dstAlpha),
            (srcRGB, dstRGB, srcAlpha, dstAlpha))
QAM_COUNTED(void, glVertexAttribPointer,
            (GLuint index, GLint size, GLenum type, GLboolean normalized, GLsizei stride,
             const void* pointer),
            (index, size, type, normalized, stride, pointer))
QAM_COUNTED(void, glEnableVertexAttribArray, (GLuint index), (index))
QAM_COUNTED(void, glDisableVertexAttribArray, (GLuint index), (index))
