#pragma once

#include "Common/Platform/Export.h"

namespace Kinetra {

// One off-screen render target: a framebuffer with an RGBA colour texture and, on demand, a
// 16-bit depth renderbuffer. Layers render into it and then sample its texture.
class TALVEQAM_EXPORT KNFBO {
  public:
    KNFBO();
    ~KNFBO();
    KNFBO(const KNFBO&) = delete;
    KNFBO& operator=(const KNFBO&) = delete;

    // Builds the texture and the framebuffer, cleared; the texture stays bound.
    void createFBOSurface(const unsigned& width, const unsigned& height);
    // Binds `id` and gives it storage without contents at the surface size and options.
    void bindFBOTexture(const unsigned& id);
    // Gives the texture (and depth storage) a new size; the framebuffer is kept.
    void resizeFBOSurface(const unsigned& width, const unsigned& height);
    void bindFBOSurface();
    void unbindFBOSurface(const unsigned& screenWidth, const unsigned& screenHeight);
    // Clears whatever framebuffer is bound to the clear colour (and depth when enabled).
    void clearFBOSurface();
    void setClearColor(const float& r, const float& g, const float& b, const float& a);

    // The renderbuffer is made once and kept while depth is off.
    void enableFBODepthBuffer();
    void disableFBODepthBuffer();

    // Take effect at the next createFBOSurface or resizeFBOSurface.
    void setFBOTextureWrapOption(const unsigned& wrap);
    void setFBOTextureMagFilterOption(const unsigned& filter);  // min and mag alike
    void setFBOTextureDataType(const unsigned& type);

    unsigned getFBOTexture() const;
    unsigned getFBOHandler() const;

    void destroyFBOSurface();
    // Forgets the GL names without deleting them: their context is gone. Size, options and
    // clear colour stay for createFBOSurface to rebuild.
    void contextChanged();

  private:
    // A truth value held in 32 bits, as effect libraries built elsewhere lay it out.
    int mDepthEnabled;
    unsigned mWrap;
    unsigned mFilter;
    unsigned mDataType;
    unsigned mWidth;
    unsigned mHeight;
    unsigned mFramebuffer;
    unsigned mTexture;
    unsigned mRenderbuffer;
    float mClearColor[4];
};

}  // namespace Kinetra
