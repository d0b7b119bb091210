#include "examples/preview/WindowSurface.h"

#include <EGL/eglext.h>
#include <GLES2/gl2.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

namespace qam::preview {
namespace {

// Host touch actions: down, up, move of the first pointer; +3 for the second.
constexpr int kDown = 0;
constexpr int kUp = 1;
constexpr int kMove = 2;

int pointerOffset(unsigned button) {
    return button == Button3 ? 3 : 0;
}

}  // namespace

std::unique_ptr<WindowSurface> WindowSurface::open(int width, int height, std::string& error) {
    std::unique_ptr<WindowSurface> surface(new WindowSurface());
    if (!surface->create(width, height, error)) {
        return nullptr;
    }
    return surface;
}

bool WindowSurface::create(int width, int height, std::string& error) {
    mDisplay = XOpenDisplay(nullptr);
    if (mDisplay == nullptr) {
        error = "--window: cannot open the X display (is DISPLAY set?)";
        return false;
    }
    auto getPlatformDisplay = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
        eglGetProcAddress("eglGetPlatformDisplayEXT"));
    if (getPlatformDisplay != nullptr) {
        mEglDisplay = getPlatformDisplay(EGL_PLATFORM_X11_KHR, mDisplay, nullptr);
    }
    if (mEglDisplay == EGL_NO_DISPLAY || !eglInitialize(mEglDisplay, nullptr, nullptr)) {
        error = "--window: no EGL on the X display";
        return false;
    }
    const EGLint configAttributes[] = {EGL_SURFACE_TYPE,
                                       EGL_WINDOW_BIT,
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
    EGLConfig config = nullptr;
    EGLint count = 0;
    EGLint visualId = 0;
    if (!eglChooseConfig(mEglDisplay, configAttributes, &config, 1, &count) || count != 1 ||
        !eglGetConfigAttrib(mEglDisplay, config, EGL_NATIVE_VISUAL_ID, &visualId)) {
        error = "--window: the X display has no GLES2 window configuration";
        return false;
    }

    XVisualInfo wanted = {};
    wanted.visualid = static_cast<VisualID>(visualId);
    int visuals = 0;
    XVisualInfo* visual = XGetVisualInfo(mDisplay, VisualIDMask, &wanted, &visuals);
    if (visual == nullptr) {
        error = "--window: no X visual for the EGL configuration";
        return false;
    }
    const Window root = RootWindow(mDisplay, visual->screen);
    XSetWindowAttributes attributes = {};
    attributes.colormap = XCreateColormap(mDisplay, root, visual->visual, AllocNone);
    attributes.event_mask = ButtonPressMask | ButtonReleaseMask | PointerMotionMask | KeyPressMask |
                            StructureNotifyMask;
    mWindow = XCreateWindow(mDisplay, root, 0, 0, width, height, 0, visual->depth, InputOutput,
                            visual->visual, CWColormap | CWEventMask, &attributes);
    XFree(visual);
    XStoreName(mDisplay, mWindow, "qam-preview");
    // Fixed size: the effect is initialised once, for this size.
    XSizeHints* hints = XAllocSizeHints();
    hints->flags = PMinSize | PMaxSize;
    hints->min_width = hints->max_width = width;
    hints->min_height = hints->max_height = height;
    XSetWMNormalHints(mDisplay, mWindow, hints);
    XFree(hints);
    Atom deleteMessage = XInternAtom(mDisplay, "WM_DELETE_WINDOW", False);
    XSetWMProtocols(mDisplay, mWindow, &deleteMessage, 1);
    mDeleteMessage = deleteMessage;
    XMapWindow(mDisplay, mWindow);

    eglBindAPI(EGL_OPENGL_ES_API);
    const EGLint contextAttributes[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
    mContext = eglCreateContext(mEglDisplay, config, EGL_NO_CONTEXT, contextAttributes);
    mSurface = eglCreateWindowSurface(mEglDisplay, config,
                                      static_cast<EGLNativeWindowType>(mWindow), nullptr);
    if (mContext == EGL_NO_CONTEXT || mSurface == EGL_NO_SURFACE ||
        !eglMakeCurrent(mEglDisplay, mSurface, mSurface, mContext)) {
        error = "--window: cannot make a GLES2 context current on the window";
        return false;
    }
    glViewport(0, 0, width, height);
    return true;
}

WindowSurface::~WindowSurface() {
    if (mEglDisplay != EGL_NO_DISPLAY) {
        eglMakeCurrent(mEglDisplay, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        if (mSurface != EGL_NO_SURFACE) {
            eglDestroySurface(mEglDisplay, mSurface);
        }
        if (mContext != EGL_NO_CONTEXT) {
            eglDestroyContext(mEglDisplay, mContext);
        }
    }
    if (mDisplay != nullptr) {
        if (mWindow != 0) {
            XDestroyWindow(mDisplay, mWindow);
        }
        // The display stays open: Mesa's driver may still refer to it until exit.
    }
}

bool WindowSurface::poll(Session& session) {
    while (XPending(mDisplay) > 0) {
        XEvent event;
        XNextEvent(mDisplay, &event);
        switch (event.type) {
            case ButtonPress:
            case ButtonRelease:
                mMouseX = event.xbutton.x;
                mMouseY = event.xbutton.y;
                if (event.xbutton.button == Button1 || event.xbutton.button == Button3) {
                    session.touch(mMouseX, mMouseY,
                                  pointerOffset(event.xbutton.button) +
                                      (event.type == ButtonPress ? kDown : kUp));
                }
                break;
            case MotionNotify:
                mMouseX = event.xmotion.x;
                mMouseY = event.xmotion.y;
                if (event.xmotion.state & Button1Mask) {
                    session.touch(mMouseX, mMouseY, kMove);
                }
                if (event.xmotion.state & Button3Mask) {
                    session.touch(mMouseX, mMouseY, 3 + kMove);
                }
                break;
            case KeyPress:
                switch (XLookupKeysym(&event.xkey, 0)) {
                    case XK_u:
                        session.showUnlock();
                        break;
                    case XK_a:
                        session.showAffordance(mMouseX, mMouseY);
                        break;
                    case XK_c:
                        session.clear();
                        break;
                    case XK_space:
                        session.paused() ? session.resume() : session.pause();
                        break;
                    case XK_q:
                    case XK_Escape:
                        return false;
                }
                break;
            case ClientMessage:
                if (static_cast<unsigned long>(event.xclient.data.l[0]) == mDeleteMessage) {
                    return false;
                }
                break;
        }
    }
    return true;
}

void WindowSurface::present() {
    eglSwapBuffers(mEglDisplay, mSurface);
}

}  // namespace qam::preview
