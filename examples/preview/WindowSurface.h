#pragma once

#include <EGL/egl.h>

#include <memory>
#include <string>

#include "examples/preview/Surface.h"

typedef struct _XDisplay Display;

namespace qam::preview {

// A fixed-size X11 window drawn through EGL. The mouse is the finger: the left button is
// the first pointer, the right button the second. Keys: u unlock, a affordance under the
// mouse, c clear, space pause and resume, q or Escape quit.
class WindowSurface : public Surface {
  public:
    // Null with the reason in `error` when there is no display or no GLES2 window on it.
    static std::unique_ptr<WindowSurface> open(int width, int height, std::string& error);
    ~WindowSurface() override;

    bool poll(Session& session) override;
    void present() override;

  private:
    WindowSurface() = default;
    bool create(int width, int height, std::string& error);

    Display* mDisplay = nullptr;
    unsigned long mWindow = 0;
    unsigned long mDeleteMessage = 0;
    EGLDisplay mEglDisplay = EGL_NO_DISPLAY;
    EGLContext mContext = EGL_NO_CONTEXT;
    EGLSurface mSurface = EGL_NO_SURFACE;
    int mMouseX = 0;
    int mMouseY = 0;
};

}  // namespace qam::preview
