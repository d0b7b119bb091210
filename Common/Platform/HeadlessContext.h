#pragma once

#include <EGL/egl.h>

#include <cstdint>
#include <vector>

namespace qam {

// A GLES2 context on Mesa's surfaceless EGL platform, drawing into a pbuffer, for tools
// and tests that run without a display. The display is never terminated: Mesa's
// driver must stay loaded until exit (its allocations would otherwise show as leaks).
class HeadlessContext {
  public:
    HeadlessContext(int width, int height);
    ~HeadlessContext();
    HeadlessContext(const HeadlessContext&) = delete;
    HeadlessContext& operator=(const HeadlessContext&) = delete;

    // Makes this context current on the calling thread.
    void makeCurrent();
    // Replaces the pbuffer with one of another size, keeping the context.
    void resize(int width, int height);
    // A new context, current on the same pbuffer: the names of the old one mean nothing
    // any more, as after the loss of a device's EGL context.
    void replaceContext();

    // The framebuffer's pixels as RGBA bytes, bottom row first.
    std::vector<uint8_t> readPixels(int x, int y, int width, int height) const;
    // One pixel as 0xRRGGBBAA.
    uint32_t readPixel(int x, int y) const;

    int width() const { return mWidth; }
    int height() const { return mHeight; }
    EGLContext context() const { return mContext; }
    EGLDisplay display() const { return mDisplay; }

  private:
    EGLDisplay mDisplay = EGL_NO_DISPLAY;
    EGLConfig mConfig = nullptr;
    EGLContext mContext = EGL_NO_CONTEXT;
    EGLSurface mSurface = EGL_NO_SURFACE;
    int mWidth = 0;
    int mHeight = 0;
};

}  // namespace qam
