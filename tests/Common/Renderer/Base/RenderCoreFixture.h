#pragma once

#include <GLES2/gl2.h>

#include <glm/mat4x4.hpp>
#include <vector>

#include "Common/Renderer/Base/Drawable.h"
#include "Common/Renderer/Base/RenderableTexture.h"
#include "Common/Renderer/Base/Renderer.h"
#include "Common/Renderer/Base/ShaderProgram.h"
#include "Common/Renderer/Base/Texture.h"
#include "tests/support/GLTest.h"

namespace qam::test {

// A GL test acting as one effect: its own renderer, texture and program lists, identity
// camera matrices and the screen as the current framebuffer.
class RenderCoreTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        mSavedRenderers = vi::Renderer::mAllRenderers;
        mSavedTextures = vi::Texture::mAllTextures;
        mSavedShaders = vi::ShaderProgram::mAllShaders;
        vi::Renderer::mAllRenderers = &mRenderers;
        vi::Texture::mAllTextures = &mTextures;
        vi::ShaderProgram::mAllShaders = &mShaders;
        *vi::Drawable::mProjectionMatrix = glm::mat4(1.0f);
        *vi::Drawable::mViewMatrix = glm::mat4(1.0f);
        vi::RenderableTexture::mCurrentFrameBuffer = 0;
        vi::RenderableTexture::mCurrentFrameBufferPosition = glm::uvec2(0, 0);
        vi::RenderableTexture::mCurrentFrameBufferSize = glm::uvec2(kWidth, kHeight);
    }
    void TearDown() override {
        while (!mShaders.empty()) {
            mShaders.back()->destroy();
        }
        vi::Renderer::mAllRenderers = mSavedRenderers;
        vi::Texture::mAllTextures = mSavedTextures;
        vi::ShaderProgram::mAllShaders = mSavedShaders;
    }

    // A program listed in this effect, destroyed after the test.
    vi::ShaderProgram& program(const char* vertex, const char* fragment) {
        return *vi::ShaderProgram::addProgram(new vi::ShaderProgram(vertex, fragment, 0));
    }

    static GLint integer(GLenum name) {
        GLint value = 0;
        glGetIntegerv(name, &value);
        return value;
    }
    static std::vector<GLint> viewport() {
        std::vector<GLint> box(4);
        glGetIntegerv(GL_VIEWPORT, box.data());
        return box;
    }

    std::vector<vi::Renderer*> mRenderers;
    std::vector<vi::Texture*> mTextures;
    std::vector<vi::ShaderProgram*> mShaders;

  private:
    std::vector<vi::Renderer*>* mSavedRenderers = nullptr;
    std::vector<vi::Texture*>* mSavedTextures = nullptr;
    std::vector<vi::ShaderProgram*>* mSavedShaders = nullptr;
};

// Flat-coloured 2-D geometry: "aPosition" (vec2) in clip space, colour "uColor".
inline constexpr const char* kFlatVertex =
    "attribute vec2 aPosition;\n"
    "void main() { gl_Position = vec4(aPosition, 0.0, 1.0); }\n";
inline constexpr const char* kFlatFragment =
    "precision mediump float;\n"
    "uniform vec4 uColor;\n"
    "void main() { gl_FragColor = uColor; }\n";

// Clip-space corners of the full viewport in triangle-strip order.
inline std::vector<glm::vec2> fullQuad() {
    return {{-1.0f, -1.0f}, {1.0f, -1.0f}, {-1.0f, 1.0f}, {1.0f, 1.0f}};
}

}  // namespace qam::test
