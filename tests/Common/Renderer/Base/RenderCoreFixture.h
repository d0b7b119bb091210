#pragma once

#include <GLES2/gl2.h>

#include <cstdlib>
#include <cstring>
#include <glm/mat4x4.hpp>
#include <memory>
#include <tuple>
#include <vector>

#include "Common/Renderer/Base/Drawable.h"
#include "Common/Renderer/Base/RenderableTexture.h"
#include "Common/Renderer/Base/Renderer.h"
#include "Common/Renderer/Base/ShaderProgram.h"
#include "Common/Renderer/Base/Texture.h"
#include "tests/support/GLCallCounter.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TextureQuad.h"

namespace qam::test {

// Flat-coloured 2-D geometry ("aPosition" in clip space, colour "uColor"), and a texture
// sampled over the viewport ("uTexture", v = 0 at the bottom).
inline constexpr const char* kFlatVertex =
    "attribute vec2 aPosition; void main() { gl_Position = vec4(aPosition, 0.0, 1.0); }";
inline constexpr const char* kFlatFragment =
    "precision mediump float; uniform vec4 uColor; void main() { gl_FragColor = uColor; }";
inline constexpr const char* kSampleVertex =
    "attribute vec2 aPosition; varying vec2 vCoord;\n"
    "void main() { vCoord = aPosition * 0.5 + 0.5; gl_Position = vec4(aPosition, 0.0, 1.0); }";
inline constexpr const char* kSampleFragment =
    "precision mediump float; uniform sampler2D uTexture; varying vec2 vCoord;\n"
    "void main() { gl_FragColor = texture2D(uTexture, vCoord); }";
inline constexpr const char* kMvpVertex =
    "attribute vec3 aPosition; uniform mat4 uModelViewProjectionMatrix;\n"
    "void main() { gl_Position = uModelViewProjectionMatrix * vec4(aPosition, 1.0); }";
inline const glm::vec4 kRed(1, 0, 0, 1), kGreen(0, 1, 0, 1), kBlue(0, 0, 1, 1);

// A GL test acting as one effect: its own renderer, texture and program lists, identity
// camera matrices and the screen as the current framebuffer. All of them are put back after.
class RenderCoreTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        std::tie(vi::Renderer::mAllRenderers, vi::Texture::mAllTextures,
                 vi::ShaderProgram::mAllShaders) = std::tuple(&mRenderers, &mTextures, &mShaders);
        *vi::Drawable::mProjectionMatrix = *vi::Drawable::mViewMatrix = glm::mat4(1.0f);
        vi::RenderableTexture::mCurrentFrameBuffer = 0;
        vi::RenderableTexture::mCurrentFrameBufferPosition = glm::uvec2(0, 0);
        vi::RenderableTexture::mCurrentFrameBufferSize = glm::uvec2(kWidth, kHeight);
    }
    void TearDown() override {
        while (!mShaders.empty()) {
            mShaders.back()->destroy();
        }
        vi::Texture::mIsNeedToRecycle = false;
        std::tie(vi::Renderer::mAllRenderers, vi::Texture::mAllTextures,
                 vi::ShaderProgram::mAllShaders) = mSaved;
        std::tie(*vi::Drawable::mProjectionMatrix, *vi::Drawable::mViewMatrix) = mSavedCamera;
        std::tie(vi::RenderableTexture::mCurrentFrameBuffer,
                 vi::RenderableTexture::mCurrentFrameBufferPosition,
                 vi::RenderableTexture::mCurrentFrameBufferSize) = mSavedTarget;
    }

    // A program listed in this effect, destroyed after the test.
    vi::ShaderProgram& program(const char* vertex, const char* fragment) {
        return *vi::ShaderProgram::addProgram(new vi::ShaderProgram(vertex, fragment, 0));
    }
    // A 2-D or 3-D triangle strip, by default over the whole viewport.
    static vi::Drawable strip(std::vector<glm::vec2> positions = {
                                  {-1, -1}, {1, -1}, {-1, 1}, {1, 1}}) {
        vi::Drawable drawable;
        drawable.mMode = GL_TRIANGLE_STRIP;
        drawable.mDimension = 2;
        drawable.mPositions2 = std::move(positions);
        return drawable;
    }
    static vi::Drawable strip3(std::vector<glm::vec3> positions = {
                                   {-1, -1, 0}, {1, -1, 0}, {-1, 1, 0}, {1, 1, 0}}) {
        vi::Drawable drawable;
        drawable.mMode = GL_TRIANGLE_STRIP;
        drawable.mPositions3 = std::move(positions);
        return drawable;
    }
    // Fills the drawable with `colour` (read at each draw), or with `texture` when given
    // (sampled by `fragment`, which has kSampleFragment's inputs).
    std::unique_ptr<vi::Renderer> flat(vi::Drawable& drawable, const glm::vec4& colour,
                                       bool isStatic = true, vi::Texture* texture = nullptr,
                                       const char* fragment = kSampleFragment) {
        auto renderer = std::make_unique<vi::Renderer>(
            texture ? program(kSampleVertex, fragment) : program(kFlatVertex, kFlatFragment),
            drawable);
        renderer->addAttribute("aPosition", drawable.mPositions2.data(), 2, isStatic);
        texture ? renderer->addTexture("uTexture", texture)
                : renderer->addUniform("uColor", &colour, vi::Uniform::kVec4, 1);
        return renderer;
    }
    // A texture over its own copy of `pixels`, freed with it.
    static vi::Texture* texture(const void* pixels, unsigned w, unsigned h, bool isStatic = true,
                                unsigned channels = 4) {
        void* copy = memcpy(malloc(w * h * channels), pixels, w * h * channels);
        auto* made =
            new vi::Texture(copy, w, h, isStatic, false, false, false, false, channels, false);
        made->setDeletable(true);
        return made;
    }
    // Draws `texture` over the viewport through its own bind().
    static void show(vi::Texture& texture) {
        TextureQuad quad;
        quad.use();
        texture.bind(quad.sampler(), 0);
        quad.draw();
    }
    static void clearScreen(const glm::vec4& colour = glm::vec4(0)) {
        glClearColor(colour.r, colour.g, colour.b, colour.a);
        glClear(GL_COLOR_BUFFER_BIT);
    }

    std::vector<vi::Renderer*> mRenderers;
    std::vector<vi::Texture*> mTextures;
    std::vector<vi::ShaderProgram*> mShaders;

  private:
    std::tuple<std::vector<vi::Renderer*>*, std::vector<vi::Texture*>*,
               std::vector<vi::ShaderProgram*>*>
        mSaved{vi::Renderer::mAllRenderers, vi::Texture::mAllTextures,
               vi::ShaderProgram::mAllShaders};
    std::tuple<glm::mat4, glm::mat4> mSavedCamera{*vi::Drawable::mProjectionMatrix,
                                                  *vi::Drawable::mViewMatrix};
    std::tuple<GLuint, glm::uvec2, glm::uvec2> mSavedTarget{
        vi::RenderableTexture::mCurrentFrameBuffer,
        vi::RenderableTexture::mCurrentFrameBufferPosition,
        vi::RenderableTexture::mCurrentFrameBufferSize};
};

}  // namespace qam::test
