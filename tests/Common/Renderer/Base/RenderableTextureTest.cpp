#include "Common/Renderer/Base/RenderableTexture.h"

#include <GLES2/gl2.h>

#include <glm/gtc/matrix_transform.hpp>
#include <memory>
#include <string>
#include <vector>

#include "tests/Common/Renderer/Base/RenderCoreFixture.h"
#include "tests/support/GLCallCounter.h"
#include "tests/support/LogCapture.h"

namespace {

using qam::test::fullQuad;
using qam::test::GLCallCounter;
using qam::test::kFlatFragment;
using qam::test::kFlatVertex;
using qam::test::LogCapture;
using vi::Drawable;
using vi::RenderableTexture;
using vi::Renderer;
using vi::Uniform;

const char* const kSampleFragment =
    "precision mediump float;\n"
    "uniform sampler2D uTexture;\n"
    "varying vec2 vCoord;\n"
    "void main() { gl_FragColor = texture2D(uTexture, vCoord); }\n";
const char* const kSampleVertex =
    "attribute vec2 aPosition;\n"
    "varying vec2 vCoord;\n"
    "void main() { vCoord = aPosition * 0.5 + 0.5; gl_Position = vec4(aPosition, 0.0, 1.0); }\n";

const glm::vec4 kGreen(0.0f, 1.0f, 0.0f, 1.0f);
const glm::vec4 kRed(1.0f, 0.0f, 0.0f, 1.0f);
const glm::vec4 kBlue(0.0f, 0.0f, 1.0f, 1.0f);

// The pixels of a target as 0xRRGGBBAA, bottom row first.
std::vector<uint32_t> contents(RenderableTexture& target) {
    std::vector<unsigned char> bytes(target.mWidth * target.mHeight * 4);
    target.readBuffer(bytes.data());
    std::vector<uint32_t> pixels;
    for (size_t i = 0; i < bytes.size(); i += 4) {
        pixels.push_back(uint32_t(bytes[i]) << 24 | uint32_t(bytes[i + 1]) << 16 |
                         uint32_t(bytes[i + 2]) << 8 | bytes[i + 3]);
    }
    return pixels;
}

std::vector<uint32_t> filled(const RenderableTexture& target, uint32_t rgba) {
    return std::vector<uint32_t>(target.mWidth * target.mHeight, rgba);
}

class RenderableTextureTest : public qam::test::RenderCoreTest {
  protected:
    RenderableTextureTest() {
        mQuad.mMode = GL_TRIANGLE_STRIP;
        mQuad.mDimension = 2;
        mQuad.mPositions2 = fullQuad();
    }

    // Fills the viewport with `colour`.
    std::unique_ptr<Renderer> flat(const glm::vec4& colour) {
        auto renderer = std::make_unique<Renderer>(program(kFlatVertex, kFlatFragment), mQuad);
        renderer->addAttribute("aPosition", mQuad.mPositions2.data(), 2, true);
        renderer->addUniform("uColor", &colour, Uniform::kVec4, 1);
        return renderer;
    }
    // Fills the viewport with `texture`.
    std::unique_ptr<Renderer> sampling(vi::Texture& texture) {
        auto renderer = std::make_unique<Renderer>(program(kSampleVertex, kSampleFragment), mQuad);
        renderer->addAttribute("aPosition", mQuad.mPositions2.data(), 2, true);
        renderer->addTexture("uTexture", &texture);
        return renderer;
    }
    void expectScreenIsCurrent() {
        EXPECT_EQ(integer(GL_FRAMEBUFFER_BINDING), 0);
        EXPECT_EQ(viewport(), (std::vector<GLint>{0, 0, kWidth, kHeight}));
        EXPECT_EQ(RenderableTexture::mCurrentFrameBuffer, 0u);
        EXPECT_EQ(RenderableTexture::mCurrentFrameBufferPosition, glm::uvec2(0, 0));
        EXPECT_EQ(RenderableTexture::getViewportSize(), glm::uvec2(kWidth, kHeight));
    }

    Drawable mQuad;
};

TEST_F(RenderableTextureTest, ClearWriteAndReadRoundTrip) {
    RenderableTexture target(0, 0, 4, 4, false, false, false, false, true);
    EXPECT_EQ(target.mKind, unsigned(vi::Texture::kRenderTarget));
    EXPECT_EQ(mTextures, std::vector<vi::Texture*>{&target});
    target.clear(kGreen);
    ASSERT_NE(target.mFrameBuffer, 0u);
    glBindFramebuffer(GL_FRAMEBUFFER, target.mFrameBuffer);
    EXPECT_EQ(glCheckFramebufferStatus(GL_FRAMEBUFFER), GLenum(GL_FRAMEBUFFER_COMPLETE));
    GLint depthType = 0;
    glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT,
                                          GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE, &depthType);
    EXPECT_EQ(depthType, GL_RENDERBUFFER);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    EXPECT_EQ(contents(target), filled(target, 0x00FF00FFu));

    std::vector<unsigned char> pattern(4 * 4 * 4);
    for (size_t i = 0; i < pattern.size(); ++i) {
        pattern[i] = static_cast<unsigned char>(i * 3);
    }
    target.writeBuffer(pattern.data());
    std::vector<unsigned char> back(pattern.size());
    target.readBuffer(back.data());
    EXPECT_EQ(back, pattern);
    expectScreenIsCurrent();
}

TEST_F(RenderableTextureTest, SourceRendersInsideTheOuterPushAndTheOuterTargetComesBack) {
    std::vector<Renderer*> innerList;
    RenderableTexture inner(innerList, 0, 0, 8, 8, false, false, false, false, false);
    std::unique_ptr<Renderer> green = flat(kGreen);
    innerList.push_back(green.get());

    std::vector<Renderer*> outerList;
    RenderableTexture outer(outerList, 0, 0, 16, 16, false, false, false, false, false);
    std::unique_ptr<Renderer> copy = sampling(inner);
    outerList.push_back(copy.get());
    EXPECT_EQ(copy->mSources, std::vector<RenderableTexture*>{&inner});
    outer.allocate();

    // Were the outer binding or its 16 x 16 viewport lost while the inner target drew, the
    // copy would land in the inner target or cover a quarter of the outer one.
    outer.renderFrame();
    EXPECT_EQ(contents(outer), filled(outer, 0x00FF00FFu));
    expectScreenIsCurrent();

    outer.clear(kBlue);
    outer.renderFrame(copy.get(), false, kBlue);
    EXPECT_EQ(contents(outer), filled(outer, 0x00FF00FFu));
    expectScreenIsCurrent();
}

TEST_F(RenderableTextureTest, ReadBufferLeavesTheBoundTargetAsItWas) {
    RenderableTexture bound(2, 3, 16, 16, false, false, false, false, false);
    RenderableTexture other(0, 0, 8, 8, false, false, false, false, false);
    bound.allocate();
    bound.enableAnchor();
    EXPECT_EQ(RenderableTexture::getViewportSize(), glm::uvec2(16, 16));

    std::vector<unsigned char> pixels(8 * 8 * 4);
    other.readBuffer(pixels.data());
    EXPECT_EQ(integer(GL_FRAMEBUFFER_BINDING), static_cast<GLint>(bound.mFrameBuffer));
    EXPECT_EQ(viewport(), (std::vector<GLint>{2, 3, 16, 16}));
    EXPECT_EQ(RenderableTexture::mCurrentFrameBuffer, bound.mFrameBuffer);
    EXPECT_EQ(RenderableTexture::mCurrentFrameBufferPosition, glm::uvec2(2, 3));
    EXPECT_EQ(RenderableTexture::getViewportSize(), glm::uvec2(16, 16));

    bound.disableAnchor();
    expectScreenIsCurrent();
}

TEST_F(RenderableTextureTest, TargetWithoutRenderersDoesNothingAtAll) {
    glClearColor(1.0f, 0.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    RenderableTexture alone(0, 0, 8, 8, false, false, false, false, false);
    std::vector<Renderer*> empty;
    RenderableTexture emptyList(empty, 0, 0, 8, 8, false, false, false, false, false);
    GLCallCounter calls;
    alone.renderFrame();
    emptyList.renderFrame();
    EXPECT_EQ(calls.total(), 0);
    EXPECT_EQ(alone.mTexture, 0u);
    EXPECT_EQ(pixel(4, 4), 0xFF0000FFu);
}

TEST_F(RenderableTextureTest, StaticSourceKeepsItsPixelsAndSamplingNeverUploads) {
    std::vector<Renderer*> sourceList;
    RenderableTexture source(sourceList, 0, 0, 8, 8, true, false, false, false, false);
    std::unique_ptr<Renderer> red = flat(kRed);
    sourceList.push_back(red.get());
    source.clear(kBlue);

    std::vector<Renderer*> outerList;
    RenderableTexture outer(outerList, 0, 0, 8, 8, false, false, false, false, false);
    std::unique_ptr<Renderer> copy = sampling(source);
    outerList.push_back(copy.get());
    outer.allocate();

    GLCallCounter calls;
    outer.renderFrame();
    EXPECT_EQ(contents(outer), filled(outer, 0x0000FFFFu));
    EXPECT_EQ(calls.count("glTexImage2D") + calls.count("glTexSubImage2D"), 0);

    source.mIsStatic = false;  // now it is drawn before every use
    outer.renderFrame();
    EXPECT_EQ(contents(outer), filled(outer, 0xFF0000FFu));
    EXPECT_EQ(calls.count("glTexImage2D") + calls.count("glTexSubImage2D"), 0);
}

TEST_F(RenderableTextureTest, WholeListUsesTheTargetsCameraAndGivesTheGlobalOneBack) {
    const char* vertex =
        "attribute vec3 aPosition;\n"
        "uniform mat4 uModelViewProjectionMatrix;\n"
        "void main() { gl_Position = uModelViewProjectionMatrix * vec4(aPosition, 1.0); }\n";
    Drawable drawable;
    drawable.mMode = GL_TRIANGLE_STRIP;
    drawable.mPositions3 = {{-1, -1, 0}, {1, -1, 0}, {-1, 1, 0}, {1, 1, 0}};
    Renderer renderer(program(vertex, kFlatFragment), drawable);
    renderer.addAttribute("aPosition", drawable.mPositions3.data(), 3, true);
    renderer.addUniform("uColor", &kGreen, Uniform::kVec4, 1);

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
    EXPECT_NE(target.mFrameBuffer, 0u);
    EXPECT_EQ(contents(target), filled(target, 0xFF0000FFu));
}

TEST_F(RenderableTextureTest, BadInputIsDroppedWithOneLineEach) {
    LogCapture log;
    std::vector<Renderer*> list{nullptr};
    RenderableTexture target(list, 0, 0, 4, 4, false, false, false, false, false);
    std::unique_ptr<Renderer> self = sampling(target);  // draws the target into itself
    list.push_back(self.get());
    target.renderFrame(nullptr, true, kRed);
    target.readBuffer(nullptr);
    target.writeBuffer(nullptr);
    target.renderFrame();
    expectScreenIsCurrent();
    EXPECT_EQ(log.messages(), (std::vector<std::string>{
                                  "RenderableTexture: no renderer to draw, frame skipped",
                                  "RenderableTexture: no memory to read into, read skipped",
                                  "RenderableTexture: no pixels to write, write skipped",
                                  "RenderableTexture: null renderer in the list, skipped",
                                  "RenderableTexture: target drawn into itself, inner frame "
                                  "skipped",
                              }));
}

}  // namespace
