#include "examples/preview/GlCounting.h"

#include <GLES2/gl2.h>
#include <GLES2/gl2ext.h>
#include <dlfcn.h>

#include <unordered_map>

namespace qam::preview {
namespace {

struct Size {
    GLint width = 0;
    GLint height = 0;
};

bool gCounting = false;
GlCounts gCounts;
Size gScreen;
// Level-0 sizes of what may become a colour attachment, by GL name: GLES2 can't be asked.
std::unordered_map<GLint, Size> gTextureSizes;
std::unordered_map<GLint, Size> gRenderbufferSizes;

int components(GLenum format) {
    switch (format) {
        case GL_ALPHA:
        case GL_LUMINANCE:
            return 1;
        case GL_LUMINANCE_ALPHA:
            return 2;
        case GL_RGB:
            return 3;
        case GL_RGBA:
            return 4;
    }
    return 0;
}

uint64_t bytesPerPixel(GLenum format, GLenum type) {
    switch (type) {
        case GL_UNSIGNED_BYTE:
            return components(format);
        case GL_HALF_FLOAT_OES:
            return 2 * components(format);
        case GL_FLOAT:
            return 4 * components(format);
        case GL_UNSIGNED_SHORT_5_6_5:
        case GL_UNSIGNED_SHORT_4_4_4_4:
        case GL_UNSIGNED_SHORT_5_5_5_1:
            return 2;
    }
    return 0;
}

GLint bound(GLenum binding) {
    GLint name = 0;
    glGetIntegerv(binding, &name);
    return name;
}

void countUpload(GLsizei width, GLsizei height, GLenum format, GLenum type, const void* pixels) {
    if (pixels != nullptr && width > 0 && height > 0) {
        gCounts.uploadBytes += uint64_t(width) * uint64_t(height) * bytesPerPixel(format, type);
    }
}

// The size of the bound render target; zero when unknown. Bindings are asked of GL rather
// than tracked, so deleted objects and a replaced context can't leave them stale.
Size renderTarget() {
    const GLint framebuffer = bound(GL_FRAMEBUFFER_BINDING);
    if (framebuffer == 0) {
        return gScreen;
    }
    GLint type = GL_NONE;
    glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0,
                                          GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE, &type);
    if (type != GL_TEXTURE && type != GL_RENDERBUFFER) {
        return {};
    }
    GLint name = 0;
    glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0,
                                          GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME, &name);
    const auto& sizes = type == GL_TEXTURE ? gTextureSizes : gRenderbufferSizes;
    const auto found = sizes.find(name);
    return found == sizes.end() ? Size{} : found->second;
}

// One quad (the vertices are not read) with the viewport over the whole render target.
bool isFullScreenPass(GLenum mode, GLsizei count) {
    const bool quad = ((mode == GL_TRIANGLE_STRIP || mode == GL_TRIANGLE_FAN) && count == 4) ||
                      (mode == GL_TRIANGLES && count == 6);
    if (!quad) {
        return false;
    }
    const Size target = renderTarget();
    GLint viewport[4];
    glGetIntegerv(GL_VIEWPORT, viewport);
    return target.width > 0 && target.height > 0 && viewport[0] <= 0 && viewport[1] <= 0 &&
           viewport[0] + viewport[2] >= target.width && viewport[1] + viewport[3] >= target.height;
}

void countDraw(GLenum mode, GLsizei count) {
    ++gCounts.drawCalls;
    gCounts.vertices += count > 0 ? uint64_t(count) : 0;
    gCounts.fullScreenPasses += isFullScreenPass(mode, count) ? 1 : 0;
}

}  // namespace

void startGlCounting(int screenWidth, int screenHeight) {
    gCounts = {};
    gScreen = {screenWidth, screenHeight};
    gCounting = true;
}

GlCounts takeGlCounts() {
    const GlCounts taken = gCounts;
    gCounts = {};
    return taken;
}

}  // namespace qam::preview

using namespace qam::preview;

// The real entry point behind a wrapper, looked up on its first call.
#define QAM_FORWARD(name) \
    static const auto forward = reinterpret_cast<decltype(&::name)>(dlsym(RTLD_NEXT, #name))

extern "C" {

__attribute__((visibility("default"))) void glDrawArrays(GLenum mode, GLint first, GLsizei count) {
    QAM_FORWARD(glDrawArrays);
    if (gCounting) {
        countDraw(mode, count);
    }
    forward(mode, first, count);
}

__attribute__((visibility("default"))) void glDrawElements(GLenum mode, GLsizei count, GLenum type,
                                                           const void* indices) {
    QAM_FORWARD(glDrawElements);
    if (gCounting) {
        countDraw(mode, count);
    }
    forward(mode, count, type, indices);
}

__attribute__((visibility("default"))) void glUseProgram(GLuint program) {
    QAM_FORWARD(glUseProgram);
    if (gCounting && bound(GL_CURRENT_PROGRAM) != GLint(program)) {
        ++gCounts.programSwitches;
    }
    forward(program);
}

__attribute__((visibility("default"))) void glBindTexture(GLenum target, GLuint texture) {
    QAM_FORWARD(glBindTexture);
    if (gCounting) {
        ++gCounts.textureBinds;
    }
    forward(target, texture);
}

__attribute__((visibility("default"))) void glTexImage2D(GLenum target, GLint level,
                                                         GLint internalFormat, GLsizei width,
                                                         GLsizei height, GLint border,
                                                         GLenum format, GLenum type,
                                                         const void* pixels) {
    QAM_FORWARD(glTexImage2D);
    if (gCounting) {
        countUpload(width, height, format, type, pixels);
        if (target == GL_TEXTURE_2D && level == 0) {
            gTextureSizes[bound(GL_TEXTURE_BINDING_2D)] = {width, height};
        }
    }
    forward(target, level, internalFormat, width, height, border, format, type, pixels);
}

__attribute__((visibility("default"))) void glTexSubImage2D(GLenum target, GLint level, GLint x,
                                                            GLint y, GLsizei width, GLsizei height,
                                                            GLenum format, GLenum type,
                                                            const void* pixels) {
    QAM_FORWARD(glTexSubImage2D);
    if (gCounting) {
        countUpload(width, height, format, type, pixels);
    }
    forward(target, level, x, y, width, height, format, type, pixels);
}

__attribute__((visibility("default"))) void glCompressedTexImage2D(GLenum target, GLint level,
                                                                   GLenum internalFormat,
                                                                   GLsizei width, GLsizei height,
                                                                   GLint border, GLsizei imageSize,
                                                                   const void* data) {
    QAM_FORWARD(glCompressedTexImage2D);
    if (gCounting && data != nullptr && imageSize > 0) {
        gCounts.uploadBytes += uint64_t(imageSize);
    }
    forward(target, level, internalFormat, width, height, border, imageSize, data);
}

__attribute__((visibility("default"))) void glCompressedTexSubImage2D(
    GLenum target, GLint level, GLint x, GLint y, GLsizei width, GLsizei height, GLenum format,
    GLsizei imageSize, const void* data) {
    QAM_FORWARD(glCompressedTexSubImage2D);
    if (gCounting && data != nullptr && imageSize > 0) {
        gCounts.uploadBytes += uint64_t(imageSize);
    }
    forward(target, level, x, y, width, height, format, imageSize, data);
}

__attribute__((visibility("default"))) void glRenderbufferStorage(GLenum target,
                                                                  GLenum internalFormat,
                                                                  GLsizei width, GLsizei height) {
    QAM_FORWARD(glRenderbufferStorage);
    if (gCounting) {
        gRenderbufferSizes[bound(GL_RENDERBUFFER_BINDING)] = {width, height};
    }
    forward(target, internalFormat, width, height);
}

__attribute__((visibility("default"))) void glBindFramebuffer(GLenum target, GLuint framebuffer) {
    QAM_FORWARD(glBindFramebuffer);
    if (gCounting) {
        ++gCounts.framebufferBinds;
    }
    forward(target, framebuffer);
}

__attribute__((visibility("default"))) void glClear(GLbitfield mask) {
    QAM_FORWARD(glClear);
    if (gCounting) {
        ++gCounts.clears;
    }
    forward(mask);
}

}  // extern "C"
