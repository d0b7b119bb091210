#pragma once

#include <GLES2/gl2.h>

#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec4.hpp>
#include <vector>

#include "Common/Renderer/Base/Texture.h"

namespace vi {

class Renderer;

// An off-screen render target: a texture attached to its own framebuffer, with an optional
// depth buffer, its own camera and a viewport origin. Targets push and pop the process-wide
// framebuffer statics around their drawing, so one target can be drawn while another is.
class TALVEQAM_EXPORT RenderableTexture : public Texture {
  public:
    // `renderers` is what renderFrame() draws; it is kept by address, not copied.
    RenderableTexture(std::vector<Renderer*>& renderers, unsigned x, unsigned y, unsigned width,
                      unsigned height, bool isStatic, bool repeat, bool mirrored, bool linear,
                      bool hasDepth);
    RenderableTexture(unsigned x, unsigned y, unsigned width, unsigned height, bool isStatic,
                      bool repeat, bool mirrored, bool linear, bool hasDepth);
    ~RenderableTexture() override;

    // Defines the texture's storage (and contents, when a buffer is set).
    void update() override;
    // Creates the texture, its framebuffer and renderbuffers unless it has a texture name.
    void allocate() override;
    // Forgets the texture and framebuffer names; the renderbuffer names go stale.
    void contextChanged() override;
    // Binds for sampling; never uploads.
    void bind(unsigned location, unsigned unit) override;

    // Makes this target current (framebuffer, viewport, statics), remembering one level of
    // what was current; disableAnchor() brings that back.
    void enableAnchor();
    void disableAnchor();

    void clear(const glm::vec4& colour);
    // Draws one renderer with the global camera matrices, after an optional clear.
    void renderFrame(Renderer* renderer, bool clear, const glm::vec4& colour);
    // Clears to opaque black and draws the whole renderer list with this target's camera.
    void renderFrame();

    // Reads width x height RGBA bytes; the bound framebuffer and viewport stay as they were.
    void readBuffer(unsigned char* pixels);
    void writeBuffer(const unsigned char* pixels);

    static glm::uvec2& getViewportSize();

    glm::mat4 mViewMatrix;
    glm::mat4 mProjectionMatrix;
    // Viewport origin while this target is bound.
    glm::uvec2 mPosition;
    GLuint mFrameBuffer;
    GLuint mColorRenderBuffer;
    GLuint mDepthRenderBuffer;
    bool mHasDepth;
    // Not owned; null when built without a list.
    std::vector<Renderer*>* mRenderers;
    GLuint mSavedFrameBuffer;
    glm::uvec2 mSavedPosition;
    glm::uvec2 mSavedSize;

    // What the render core has bound now; the host keeps them on the screen between targets.
    static GLuint mCurrentFrameBuffer;
    static glm::uvec2 mCurrentFrameBufferPosition;
    static glm::uvec2 mCurrentFrameBufferSize;

  private:
    // Binds this target and points the statics at it; callers save what was current first.
    void bindAsCurrent();
};

}  // namespace vi
