#include "Common/Renderer/Base/RenderableTexture.h"

#include <glm/gtc/matrix_transform.hpp>

#include "tests/Common/Renderer/Base/RenderCoreFixture.h"

namespace {

using namespace qam::test;
using vi::RenderableTexture;
using vi::Renderer;

// The pixels of a target as 0xRRGGBBAA, bottom row first.
std::vector<uint32_t> contents(RenderableTexture& target) {
    std::vector<uint32_t> pixels(target.mWidth * target.mHeight);
    target.readBuffer(reinterpret_cast<unsigned char*>(pixels.data()));
    for (uint32_t& pixel : pixels) {
        pixel = __builtin_bswap32(pixel);  // RGBA bytes to 0xRRGGBBAA
    }
    return pixels;
}

std::vector<uint32_t> filled(const RenderableTexture& target, uint32_t rgba) {
    return std::vector<uint32_t>(target.mWidth * target.mHeight, rgba);
}

class RenderableTextureTest : public RenderCoreTest {
  protected:
    // The GL binding and viewport, and the statics that mirror them.
    void expectCurrent(GLuint frameBuffer = 0, glm::uvec2 at = {0, 0},
                       glm::uvec2 size = {kWidth, kHeight}) {
        GLint binding = -1, box[4] = {};
        glGetIntegerv(GL_FRAMEBUFFER_BINDING, &binding);
        glGetIntegerv(GL_VIEWPORT, box);
        EXPECT_EQ(binding, static_cast<GLint>(frameBuffer));
        EXPECT_EQ(glm::ivec4(box[0], box[1], box[2], box[3]), glm::ivec4(at, size));
        EXPECT_EQ(RenderableTexture::mCurrentFrameBuffer, frameBuffer);
        EXPECT_EQ(RenderableTexture::mCurrentFrameBufferPosition, at);
        EXPECT_EQ(RenderableTexture::getViewportSize(), size);
    }

    vi::Drawable mQuad = strip();
};

TEST_F(RenderableTextureTest, ClearWriteAndReadRoundTrip) {
    RenderableTexture target(0, 0, 4, 4, false, false, false, false, false);
    EXPECT_EQ(mTextures, std::vector<vi::Texture*>{&target});
    target.clear(kGreen);
    EXPECT_EQ(contents(target), filled(target, 0x00FF00FFu));

    std::vector<unsigned char> pattern(4 * 4 * 4);
    for (size_t i = 0; i < pattern.size(); ++i) {
        pattern[i] = static_cast<unsigned char>(i * 3);
    }
    target.writeBuffer(pattern.data());
    expectCurrent();
    // Read while another target is anchored: that one stays bound.
    RenderableTexture bound(2, 3, 16, 16, false, false, false, false, false);
    bound.allocate();
    bound.enableAnchor();
    std::vector<unsigned char> back(pattern.size());
    target.readBuffer(back.data());
    EXPECT_EQ(back, pattern);
    expectCurrent(bound.mFrameBuffer, {2, 3}, {16, 16});
    bound.disableAnchor();
    expectCurrent();
}

TEST_F(RenderableTextureTest, SourceRendersInsideTheOuterPushAndTheOuterTargetComesBack) {
    std::vector<Renderer*> innerList, outerList;
    RenderableTexture inner(innerList, 0, 0, 8, 8, false, false, false, false, false);
    std::unique_ptr<Renderer> green = flat(mQuad, kGreen);
    innerList.push_back(green.get());
    RenderableTexture outer(outerList, 0, 0, 16, 16, false, false, false, false, false);
    std::unique_ptr<Renderer> copy = sampling(mQuad, inner);
    outerList.push_back(copy.get());
    EXPECT_EQ(copy->mSources, std::vector<RenderableTexture*>{&inner});
    outer.allocate();

    // Were the outer binding or its 16 x 16 viewport lost while the inner target drew, the
    // copy would land in the inner target or cover a quarter of the outer one.
    outer.renderFrame();
    EXPECT_EQ(contents(outer), filled(outer, 0x00FF00FFu));
    expectCurrent();
    outer.clear(kBlue);
    outer.renderFrame(copy.get(), false, kBlue);
    EXPECT_EQ(contents(outer), filled(outer, 0x00FF00FFu));
    expectCurrent();

    // A static source keeps its pixels; sampling a target never uploads.
    inner.mIsStatic = true;
    inner.clear(kBlue);
    GLCallCounter calls;
    outer.renderFrame();
    EXPECT_EQ(contents(outer), filled(outer, 0x0000FFFFu));
    EXPECT_EQ(calls.count("glTexImage2D") + calls.count("glTexSubImage2D"), 0);
}

TEST_F(RenderableTextureTest, WholeListUsesTheTargetsCameraAndGivesTheGlobalOneBack) {
    const char* vertex =
        "attribute vec3 aPosition; uniform mat4 uModelViewProjectionMatrix;\n"
        "void main() { gl_Position = uModelViewProjectionMatrix * vec4(aPosition, 1.0); }";
    vi::Drawable drawable;
    drawable.mMode = GL_TRIANGLE_STRIP;
    drawable.mPositions3 = {{-1, -1, 0}, {1, -1, 0}, {-1, 1, 0}, {1, 1, 0}};
    Renderer renderer(program(vertex, kFlatFragment), drawable);
    renderer.addAttribute("aPosition", drawable.mPositions3.data(), 3, true);
    renderer.addUniform("uColor", &kGreen, vi::Uniform::kVec4, 1);

    std::vector<Renderer*> list{&renderer};
    RenderableTexture target(list, 0, 0, 16, 16, false, false, false, false, false);
    target.mProjectionMatrix = glm::scale(glm::mat4(1.0f), glm::vec3(0.5f, 0.5f, 1.0f));
    target.mViewMatrix = glm::translate(glm::mat4(1.0f), glm::vec3(1.0f, 0.0f, 0.0f));
    const glm::mat4 globalView = glm::translate(glm::mat4(1.0f), glm::vec3(-1.0f, 0.0f, 0.0f));
    *vi::Drawable::mViewMatrix = globalView;
    target.allocate();

    target.renderFrame();  // its camera: the right half, vertical middle; cleared to black
    std::vector<uint32_t> pixels = contents(target);
    EXPECT_EQ(pixels[8 * 16 + 12], 0x00FF00FFu);
    EXPECT_EQ(pixels[8 * 16 + 4], 0x000000FFu);
    EXPECT_EQ(pixels[1 * 16 + 12], 0x000000FFu);
    EXPECT_EQ(*vi::Drawable::mViewMatrix, globalView);
    EXPECT_EQ(*vi::Drawable::mProjectionMatrix, glm::mat4(1.0f));

    target.renderFrame(&renderer, true, kBlue);  // the global camera: the left half
    pixels = contents(target);
    EXPECT_EQ(pixels[1 * 16 + 4], 0x00FF00FFu);
    EXPECT_EQ(pixels[1 * 16 + 12], 0x0000FFFFu);
}

TEST_F(RenderableTextureTest, LostContextIsForgottenAndRebuiltOnNextUse) {
    RenderableTexture target(0, 0, 4, 4, false, false, false, false, false);
    target.clear(kGreen);
    loseContext();
    target.contextChanged();
    EXPECT_EQ(target.mTexture, 0u);
    EXPECT_EQ(target.mFrameBuffer, 0u);
    target.clear(kRed);
    EXPECT_EQ(contents(target), filled(target, 0xFF0000FFu));
}

TEST_F(RenderableTextureTest, BadInputIsDroppedWithOneLineEachAndNoRenderersDoNothing) {
    LogCapture log;
    std::vector<Renderer*> list{nullptr}, empty;
    RenderableTexture target(list, 0, 0, 4, 4, false, false, false, false, false);
    std::unique_ptr<Renderer> self = sampling(mQuad, target);  // draws the target into itself
    list.push_back(self.get());
    target.renderFrame(nullptr, true, kRed);
    target.readBuffer(nullptr);
    target.writeBuffer(nullptr);
    target.renderFrame();
    expectCurrent();
    EXPECT_EQ(log.messages().size(), 5u);

    RenderableTexture alone(0, 0, 8, 8, false, false, false, false, false);
    RenderableTexture emptyList(empty, 0, 0, 8, 8, false, false, false, false, false);
    GLCallCounter calls;
    alone.renderFrame();
    emptyList.renderFrame();
    EXPECT_EQ(calls.total(), 0);
}

}  // namespace
