#include "Common/Renderer/Base/RenderableTexture.h"

#include <algorithm>
#include <vector>

#include "Common/Platform/Log.h"
#include "Common/Renderer/Base/Drawable.h"
#include "Common/Renderer/Base/Renderer.h"

namespace vi {
namespace {

// The three framebuffer statics, saved on the C++ stack for one nested draw.
struct SavedTarget {
    GLuint frameBuffer = RenderableTexture::mCurrentFrameBuffer;
    glm::uvec2 position = RenderableTexture::mCurrentFrameBufferPosition;
    glm::uvec2 size = RenderableTexture::mCurrentFrameBufferSize;

    void restore() const {
        RenderableTexture::mCurrentFrameBuffer = frameBuffer;
        RenderableTexture::mCurrentFrameBufferPosition = position;
        RenderableTexture::mCurrentFrameBufferSize = size;
        glBindFramebuffer(GL_FRAMEBUFFER, frameBuffer);
        glViewport(static_cast<GLint>(position.x), static_cast<GLint>(position.y),
                   static_cast<GLsizei>(size.x), static_cast<GLsizei>(size.y));
    }
};

// The targets whose renderFrame() is running on this thread, innermost last: a renderer that
// samples the target it is drawn into would otherwise recurse without end.
thread_local std::vector<const RenderableTexture*> tRendering;

}  // namespace

GLuint RenderableTexture::mCurrentFrameBuffer = 0;
glm::uvec2 RenderableTexture::mCurrentFrameBufferPosition(0, 0);
glm::uvec2 RenderableTexture::mCurrentFrameBufferSize(0, 0);

RenderableTexture::RenderableTexture(std::vector<Renderer*>& renderers, unsigned x, unsigned y,
                                     unsigned width, unsigned height, bool isStatic, bool repeat,
                                     bool mirrored, bool linear, bool hasDepth)
    : RenderableTexture(x, y, width, height, isStatic, repeat, mirrored, linear, hasDepth) {
    mRenderers = &renderers;
}

RenderableTexture::RenderableTexture(unsigned x, unsigned y, unsigned width, unsigned height,
                                     bool isStatic, bool repeat, bool mirrored, bool linear,
                                     bool hasDepth)
    : Texture(nullptr, width, height, isStatic, repeat, mirrored, linear, false, 4, false),
      mViewMatrix(1.0f),
      mProjectionMatrix(1.0f),
      mPosition(x, y),
      mFrameBuffer(0),
      mColorRenderBuffer(0),
      mDepthRenderBuffer(0),
      mHasDepth(hasDepth),
      mRenderers(nullptr),
      mSavedFrameBuffer(0),
      mSavedPosition(0, 0),
      mSavedSize(0, 0) {
    mKind = kRenderTarget;
}

RenderableTexture::~RenderableTexture() {
    qam::forgetLoggedOnce(this);
    if (mFrameBuffer != 0) {
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        glBindRenderbuffer(GL_RENDERBUFFER, 0);
        glDeleteFramebuffers(1, &mFrameBuffer);
        glDeleteRenderbuffers(1, &mColorRenderBuffer);
        if (mHasDepth) {
            glDeleteRenderbuffers(1, &mDepthRenderBuffer);
        }
    }
}

void RenderableTexture::update() {
    glBindTexture(GL_TEXTURE_2D, mTexture);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    if (mIsSubImageUse && mIsUploaded) {
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, mWidth, mHeight, GL_RGBA, GL_UNSIGNED_BYTE,
                        mBuffer);
    } else {
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, mWidth, mHeight, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                     mBuffer);
        mIsUploaded = true;
    }
}

void RenderableTexture::allocate() {
    if (mTexture != 0) {
        return;
    }
    Texture::allocate();
    if (!mIsStatic) {
        update();
    }
    const GLsizei width = static_cast<GLsizei>(mWidth);
    const GLsizei height = static_cast<GLsizei>(mHeight);

    // The texture replaces this attachment right away; the renderbuffer is kept all the same.
    glGenRenderbuffers(1, &mColorRenderBuffer);
    glBindRenderbuffer(GL_RENDERBUFFER, mColorRenderBuffer);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA4, width, height);
    glBindRenderbuffer(GL_RENDERBUFFER, 0);

    glGenFramebuffers(1, &mFrameBuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, mFrameBuffer);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                              mColorRenderBuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, mTexture, 0);
    if (mHasDepth) {
        glGenRenderbuffers(1, &mDepthRenderBuffer);
        glBindRenderbuffer(GL_RENDERBUFFER, mDepthRenderBuffer);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT16, width, height);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER,
                                  mDepthRenderBuffer);
    }
    glCheckFramebufferStatus(GL_FRAMEBUFFER);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

void RenderableTexture::contextChanged() {
    Texture::contextChanged();
    mFrameBuffer = 0;
}

void RenderableTexture::bind(unsigned location, unsigned unit) {
    glActiveTexture(GL_TEXTURE0 + unit);
    glBindTexture(GL_TEXTURE_2D, mTexture);
    glUniform1i(static_cast<GLint>(location), static_cast<GLint>(unit));
}

void RenderableTexture::bindAsCurrent() {
    mCurrentFrameBuffer = mFrameBuffer;
    mCurrentFrameBufferPosition = mPosition;
    mCurrentFrameBufferSize = glm::uvec2(mWidth, mHeight);
    glBindFramebuffer(GL_FRAMEBUFFER, mFrameBuffer);
    glViewport(static_cast<GLint>(mPosition.x), static_cast<GLint>(mPosition.y),
               static_cast<GLsizei>(mWidth), static_cast<GLsizei>(mHeight));
}

void RenderableTexture::enableAnchor() {
    mSavedFrameBuffer = mCurrentFrameBuffer;
    mSavedPosition = mCurrentFrameBufferPosition;
    mSavedSize = mCurrentFrameBufferSize;
    bindAsCurrent();
}

void RenderableTexture::disableAnchor() {
    SavedTarget{mSavedFrameBuffer, mSavedPosition, mSavedSize}.restore();
}

void RenderableTexture::clear(const glm::vec4& colour) {
    allocate();
    enableAnchor();
    glClearColor(colour.r, colour.g, colour.b, colour.a);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    disableAnchor();
}

void RenderableTexture::renderFrame(Renderer* renderer, bool clear, const glm::vec4& colour) {
    if (renderer == nullptr) {
        qam::logErrorOnce(this, "RenderableTexture: no renderer to draw, frame skipped");
        return;
    }
    allocate();
    enableAnchor();
    if (clear) {
        glClearColor(colour.r, colour.g, colour.b, colour.a);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    }
    renderer->draw();
    disableAnchor();
}

void RenderableTexture::renderFrame() {
    if (mRenderers == nullptr || mRenderers->empty()) {
        return;
    }
    if (std::find(tRendering.begin(), tRendering.end(), this) != tRendering.end()) {
        qam::logErrorOnce(this, "RenderableTexture: target drawn into itself, inner frame skipped");
        return;
    }
    tRendering.push_back(this);
    const glm::mat4 savedView = *Drawable::mViewMatrix;
    const glm::mat4 savedProjection = *Drawable::mProjectionMatrix;
    *Drawable::mViewMatrix = mViewMatrix;
    *Drawable::mProjectionMatrix = mProjectionMatrix;

    const SavedTarget saved;
    bindAsCurrent();
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    for (Renderer* renderer : *mRenderers) {
        if (renderer == nullptr) {
            qam::logErrorOnce(this, "RenderableTexture: null renderer in the list, skipped");
            continue;
        }
        renderer->draw();
    }
    saved.restore();

    *Drawable::mViewMatrix = savedView;
    *Drawable::mProjectionMatrix = savedProjection;
    tRendering.pop_back();
}

void RenderableTexture::readBuffer(unsigned char* pixels) {
    allocate();
    const SavedTarget saved;
    bindAsCurrent();
    // The unpack alignment although this is a read: kept as it has always been.
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glReadPixels(static_cast<GLint>(mPosition.x), static_cast<GLint>(mPosition.y),
                 static_cast<GLsizei>(mWidth), static_cast<GLsizei>(mHeight), GL_RGBA,
                 GL_UNSIGNED_BYTE, pixels);
    saved.restore();
}

void RenderableTexture::writeBuffer(const unsigned char* pixels) {
    allocate();
    glBindTexture(GL_TEXTURE_2D, mTexture);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, static_cast<GLsizei>(mWidth),
                    static_cast<GLsizei>(mHeight), GL_RGBA, GL_UNSIGNED_BYTE, pixels);
}

glm::uvec2& RenderableTexture::getViewportSize() {
    return mCurrentFrameBufferSize;
}

}  // namespace vi
