#include "Common/Platform/HeadlessContext.h"

#include <EGL/eglext.h>
#include <GLES2/gl2.h>

#include <cstdio>
#include <cstdlib>

namespace qam {
namespace {

[[noreturn]] void fail(const char* what) {
    fprintf(stderr, "headless EGL: %s failed (0x%x)\n", what, eglGetError());
    abort();
}

EGLDisplay surfacelessDisplay() {
    static const EGLDisplay display = [] {
        auto getPlatformDisplay = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
            eglGetProcAddress("eglGetPlatformDisplayEXT"));
        if (getPlatformDisplay == nullptr) {
            fail("eglGetProcAddress(eglGetPlatformDisplayEXT)");
        }
        EGLDisplay d =
            getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
        if (d == EGL_NO_DISPLAY || !eglInitialize(d, nullptr, nullptr)) {
            fail("eglInitialize on the surfaceless platform");
        }
        return d;
    }();
    return display;
}

}  // namespace

HeadlessContext::HeadlessContext(int width, int height) : mDisplay(surfacelessDisplay()) {
    const EGLint configAttributes[] = {EGL_SURFACE_TYPE,
                                       EGL_PBUFFER_BIT,
                                       EGL_RENDERABLE_TYPE,
                                       EGL_OPENGL_ES2_BIT,
                                       EGL_RED_SIZE,
                                       8,
                                       EGL_GREEN_SIZE,
                                       8,
                                       EGL_BLUE_SIZE,
                                       8,
                                       EGL_ALPHA_SIZE,
                                       8,
                                       EGL_DEPTH_SIZE,
                                       16,
                                       EGL_NONE};
    EGLint count = 0;
    if (!eglChooseConfig(mDisplay, configAttributes, &mConfig, 1, &count) || count != 1) {
        fail("eglChooseConfig");
    }
    eglBindAPI(EGL_OPENGL_ES_API);
    replaceContext();
    resize(width, height);
}

HeadlessContext::~HeadlessContext() {
    eglMakeCurrent(mDisplay, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroySurface(mDisplay, mSurface);
    eglDestroyContext(mDisplay, mContext);
}

void HeadlessContext::makeCurrent() {
    if (!eglMakeCurrent(mDisplay, mSurface, mSurface, mContext)) {
        fail("eglMakeCurrent");
    }
}

void HeadlessContext::resize(int width, int height) {
    const EGLint attributes[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
    EGLSurface surface = eglCreatePbufferSurface(mDisplay, mConfig, attributes);
    if (surface == EGL_NO_SURFACE) {
        fail("eglCreatePbufferSurface");
    }
    EGLSurface old = mSurface;
    mSurface = surface;
    mWidth = width;
    mHeight = height;
    makeCurrent();
    if (old != EGL_NO_SURFACE) {
        eglDestroySurface(mDisplay, old);
    }
    glViewport(0, 0, width, height);
}

void HeadlessContext::replaceContext() {
    const EGLint attributes[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
    EGLContext context = eglCreateContext(mDisplay, mConfig, EGL_NO_CONTEXT, attributes);
    if (context == EGL_NO_CONTEXT) {
        fail("eglCreateContext");
    }
    EGLContext old = mContext;
    mContext = context;
    if (mSurface != EGL_NO_SURFACE) {
        makeCurrent();
        glViewport(0, 0, mWidth, mHeight);
    }
    if (old != EGL_NO_CONTEXT) {
        eglDestroyContext(mDisplay, old);
    }
}

std::vector<uint8_t> HeadlessContext::readPixels(int x, int y, int width, int height) const {
    std::vector<uint8_t> pixels(static_cast<size_t>(width) * height * 4);
    GLint packAlignment = 4;
    glGetIntegerv(GL_PACK_ALIGNMENT, &packAlignment);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(x, y, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    glPixelStorei(GL_PACK_ALIGNMENT, packAlignment);
    return pixels;
}

uint32_t HeadlessContext::readPixel(int x, int y) const {
    const std::vector<uint8_t> p = readPixels(x, y, 1, 1);
    return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];
}

}  // namespace qam
