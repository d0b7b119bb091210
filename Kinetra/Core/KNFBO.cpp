#include "Kinetra/Core/KNFBO.h"

#include <GLES2/gl2.h>

namespace Kinetra {

KNFBO::KNFBO()
    : mDepthEnabled(false),
      mWrap(GL_CLAMP_TO_EDGE),
      mFilter(GL_LINEAR),
      mDataType(GL_UNSIGNED_BYTE),
      mWidth(0),
      mHeight(0),
      mFramebuffer(0),
      mTexture(0),
      mRenderbuffer(0),
      mClearColor{0, 0, 0, 0} {}

KNFBO::~KNFBO() {
    destroyFBOSurface();
}

// Any size goes to GL as given: an empty one makes an incomplete target, which is not reported.
void KNFBO::createFBOSurface(const unsigned& width, const unsigned& height) {
    mWidth = width;
    mHeight = height;
    glGenTextures(1, &mTexture);
    bindFBOTexture(mTexture);
    glGenFramebuffers(1, &mFramebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, mFramebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, mTexture, 0);
    glCheckFramebufferStatus(GL_FRAMEBUFFER);  // an incomplete target is not reported
    clearFBOSurface();
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

void KNFBO::bindFBOTexture(const unsigned& id) {
    glBindTexture(GL_TEXTURE_2D, id);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, static_cast<GLint>(mWrap));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, static_cast<GLint>(mWrap));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, static_cast<GLint>(mFilter));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, static_cast<GLint>(mFilter));
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, static_cast<GLsizei>(mWidth),
                 static_cast<GLsizei>(mHeight), 0, GL_RGBA, mDataType, nullptr);
}

void KNFBO::resizeFBOSurface(const unsigned& width, const unsigned& height) {
    if (width == mWidth && height == mHeight) {
        return;
    }
    mWidth = width;
    mHeight = height;
    bindFBOTexture(mTexture);
    if (mDepthEnabled) {
        glBindRenderbuffer(GL_RENDERBUFFER, mRenderbuffer);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT16, static_cast<GLsizei>(mWidth),
                              static_cast<GLsizei>(mHeight));
        glBindRenderbuffer(GL_RENDERBUFFER, 0);
    }
}

void KNFBO::bindFBOSurface() {
    glBindFramebuffer(GL_FRAMEBUFFER, mFramebuffer);
    glViewport(0, 0, static_cast<GLsizei>(mWidth), static_cast<GLsizei>(mHeight));
}

void KNFBO::unbindFBOSurface(const unsigned& screenWidth, const unsigned& screenHeight) {
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glViewport(0, 0, static_cast<GLsizei>(screenWidth), static_cast<GLsizei>(screenHeight));
}

void KNFBO::clearFBOSurface() {
    glClearColor(mClearColor[0], mClearColor[1], mClearColor[2], mClearColor[3]);
    glClear(mDepthEnabled ? GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT : GL_COLOR_BUFFER_BIT);
}

void KNFBO::setClearColor(const float& r, const float& g, const float& b, const float& a) {
    mClearColor[0] = r;
    mClearColor[1] = g;
    mClearColor[2] = b;
    mClearColor[3] = a;
}

// Before a surface exists the attachment goes to framebuffer 0, which GL refuses; the
// renderbuffer is made all the same.
void KNFBO::enableFBODepthBuffer() {
    mDepthEnabled = true;
    glBindFramebuffer(GL_FRAMEBUFFER, mFramebuffer);
    if (mRenderbuffer == 0) {
        glGenRenderbuffers(1, &mRenderbuffer);
        glBindRenderbuffer(GL_RENDERBUFFER, mRenderbuffer);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT16, static_cast<GLsizei>(mWidth),
                              static_cast<GLsizei>(mHeight));
    }
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, mRenderbuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

void KNFBO::disableFBODepthBuffer() {
    mDepthEnabled = false;
    glBindFramebuffer(GL_FRAMEBUFFER, mFramebuffer);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, 0);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

void KNFBO::setFBOTextureWrapOption(const unsigned& wrap) {
    mWrap = wrap;
}

void KNFBO::setFBOTextureMagFilterOption(const unsigned& filter) {
    mFilter = filter;
}

void KNFBO::setFBOTextureDataType(const unsigned& type) {
    mDataType = type;
}

void KNFBO::destroyFBOSurface() {
    if (mFramebuffer != 0) {
        glDeleteFramebuffers(1, &mFramebuffer);
        mFramebuffer = 0;
    }
    if (mTexture != 0) {
        glDeleteTextures(1, &mTexture);
        mTexture = 0;
    }
    if (mRenderbuffer != 0) {
        glDeleteRenderbuffers(1, &mRenderbuffer);
        mRenderbuffer = 0;
    }
}

void KNFBO::contextChanged() {
    mFramebuffer = 0;
    mTexture = 0;
    mRenderbuffer = 0;
}

unsigned KNFBO::getFBOTexture() const {
    return mTexture;
}

unsigned KNFBO::getFBOHandler() const {
    return mFramebuffer;
}

}  // namespace Kinetra
