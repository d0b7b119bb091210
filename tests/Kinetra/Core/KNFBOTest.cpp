#include "Kinetra/Core/KNFBO.h"

#include <GLES2/gl2.h>

#include "Kinetra/Core/KNShaderManager.h"
#include "tests/support/GLCallCounter.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TextureQuad.h"

namespace {

using Kinetra::KNFBO;
using Kinetra::KNShaderManager;
using qam::test::GLCallCounter;
using qam::test::GLTest;
using qam::test::LogCapture;
using qam::test::TextureQuad;

constexpr uint32_t kRed = 0xFF0000FFu;
constexpr uint32_t kGreen = 0x00FF00FFu;
constexpr uint32_t kBlue = 0x0000FFFFu;
constexpr unsigned kSize = 16;

class KNFBOTest : public GLTest {
  protected:
    // Solid colour quads at a given depth, covering x from `left` to `right` in clip space.
    void fill(float left, float right, float depth, float r, float g, float b) {
        if (solid.getProgram() == 0) {
            solid.createProgram(
                "attribute vec2 aPosition;\n"
                "uniform float uDepth;\n"
                "void main() { gl_Position = vec4(aPosition, uDepth, 1.0); }\n",
                "precision mediump float;\n"
                "uniform vec4 uColor;\n"
                "void main() { gl_FragColor = uColor; }\n");
        }
        const float corners[] = {left, -1, right, -1, left, 1, right, 1};
        glUseProgram(solid.getProgram());
        glUniform1f(solid.getUniformLoc("uDepth"), depth);
        glUniform4f(solid.getUniformLoc("uColor"), r, g, b, 1);
        const GLuint position = static_cast<GLuint>(solid.getAttributeLoc("aPosition"));
        glVertexAttribPointer(position, 2, GL_FLOAT, GL_FALSE, 0, corners);
        glEnableVertexAttribArray(position);
        glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
        glDisableVertexAttribArray(position);
        glUseProgram(0);
    }
    void show(GLuint texture) {
        quad.use();
        glActiveTexture(GL_TEXTURE0);
        glBindTexture(GL_TEXTURE_2D, texture);
        glUniform1i(quad.sampler(), 0);
        quad.draw();
    }
    GLint bound(GLenum what) {
        GLint value = -1;
        glGetIntegerv(what, &value);
        return value;
    }
    GLint depthAttachment() {
        GLint name = -1;
        glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT,
                                              GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME, &name);
        return name;
    }

    KNShaderManager solid;
    TextureQuad quad;
};

TEST_F(KNFBOTest, ClearingAfterConstructionGivesTransparentBlack) {
    KNFBO fbo;
    glClearColor(1, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    fbo.clearFBOSurface();  // clears whatever is bound: here the screen
    EXPECT_PIXEL_NEAR(pixel(5, 5), 0x00000000u, 0);
    EXPECT_EQ(fbo.getFBOHandler(), 0u);
    EXPECT_EQ(fbo.getFBOTexture(), 0u);
}

TEST_F(KNFBOTest, RenderedIntoThenSampledAsATexture) {
    KNFBO fbo;
    fbo.setClearColor(0, 0, 1, 1);
    fbo.createFBOSurface(kSize, kSize);
    ASSERT_TRUE(glIsFramebuffer(fbo.getFBOHandler()));
    EXPECT_EQ(bound(GL_FRAMEBUFFER_BINDING), 0);
    EXPECT_EQ(bound(GL_TEXTURE_BINDING_2D), static_cast<GLint>(fbo.getFBOTexture()));

    fbo.bindFBOSurface();
    EXPECT_EQ(bound(GL_FRAMEBUFFER_BINDING), static_cast<GLint>(fbo.getFBOHandler()));
    EXPECT_EQ(glCheckFramebufferStatus(GL_FRAMEBUFFER),
              static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE));
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(viewport[2], static_cast<GLint>(kSize));
    EXPECT_PIXEL_NEAR(pixel(8, 8), kBlue, 0);  // cleared when created
    fill(-1, 0, 0, 1, 0, 0);                   // red left half
    EXPECT_PIXEL_NEAR(pixel(3, 8), kRed, 0);
    fbo.unbindFBOSurface(kWidth, kHeight);
    EXPECT_EQ(bound(GL_FRAMEBUFFER_BINDING), 0);
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(viewport[2], kWidth);
    EXPECT_EQ(viewport[3], kHeight);

    show(fbo.getFBOTexture());
    EXPECT_PIXEL_NEAR(pixel(5, 30), kRed, 0);
    EXPECT_PIXEL_NEAR(pixel(58, 30), kBlue, 0);

    // A clear with another colour replaces the contents.
    fbo.setClearColor(0, 1, 0, 1);
    fbo.bindFBOSurface();
    fbo.clearFBOSurface();
    fbo.unbindFBOSurface(kWidth, kHeight);
    show(fbo.getFBOTexture());
    EXPECT_PIXEL_NEAR(pixel(5, 30), kGreen, 0);
}

TEST_F(KNFBOTest, TextureOptionsApplyWhenTheSurfaceIsMade) {
    KNFBO fbo;
    fbo.setFBOTextureWrapOption(GL_REPEAT);
    fbo.setFBOTextureMagFilterOption(GL_NEAREST);
    fbo.setFBOTextureDataType(GL_UNSIGNED_SHORT_4_4_4_4);
    fbo.createFBOSurface(kSize, kSize);
    GLint value = 0;
    for (GLenum name : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T}) {
        glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
        EXPECT_EQ(value, GL_REPEAT);
    }
    for (GLenum name : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER}) {
        glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
        EXPECT_EQ(value, GL_NEAREST);
    }
    // Four bits a channel: a half-bright clear reads back as 0x88 or 0x77.
    fbo.setClearColor(0.5f, 0.5f, 0.5f, 1);
    fbo.bindFBOSurface();
    fbo.clearFBOSurface();
    EXPECT_PIXEL_NEAR(pixel(1, 1), 0x808080FFu, 9);
    EXPECT_EQ(bound(GL_RED_BITS), 4);
    fbo.unbindFBOSurface(kWidth, kHeight);
}

TEST_F(KNFBOTest, DepthBufferIsMadeOnceAndKeptWhileOff) {
    KNFBO fbo;
    fbo.createFBOSurface(kSize, kSize);
    GLCallCounter calls;
    fbo.enableFBODepthBuffer();
    fbo.enableFBODepthBuffer();
    EXPECT_EQ(calls.count("glGenRenderbuffers"), 1);
    EXPECT_EQ(calls.count("glRenderbufferStorage"), 1);
    EXPECT_EQ(bound(GL_FRAMEBUFFER_BINDING), 0);

    // Depth works: a far quad drawn after a near one stays hidden until the next clear.
    fbo.bindFBOSurface();
    const GLint depthName = depthAttachment();
    ASSERT_GT(depthName, 0);
    fbo.clearFBOSurface();
    glEnable(GL_DEPTH_TEST);
    fill(-1, 1, -0.5f, 1, 0, 0);
    fill(-1, 1, 0.5f, 0, 1, 0);
    EXPECT_PIXEL_NEAR(pixel(8, 8), kRed, 0);
    fbo.clearFBOSurface();
    fill(-1, 1, 0.5f, 0, 1, 0);
    EXPECT_PIXEL_NEAR(pixel(8, 8), kGreen, 0);

    // Off: detached but not deleted; on again: the same renderbuffer, nothing new made.
    fbo.disableFBODepthBuffer();
    fbo.bindFBOSurface();
    EXPECT_EQ(depthAttachment(), 0);
    EXPECT_TRUE(glIsRenderbuffer(static_cast<GLuint>(depthName)));
    fill(-1, 1, 0.9f, 0, 0, 1);  // no depth buffer: everything passes
    EXPECT_PIXEL_NEAR(pixel(8, 8), kBlue, 0);
    fbo.enableFBODepthBuffer();
    fbo.bindFBOSurface();
    EXPECT_EQ(depthAttachment(), depthName);
    EXPECT_EQ(calls.count("glGenRenderbuffers"), 1);
    glDisable(GL_DEPTH_TEST);
    fbo.unbindFBOSurface(kWidth, kHeight);
}

TEST_F(KNFBOTest, ResizingToTheSameSizeTouchesNothing) {
    KNFBO fbo;
    fbo.setClearColor(1, 0, 0, 1);
    fbo.createFBOSurface(kSize, kSize);
    fbo.enableFBODepthBuffer();
    const unsigned framebuffer = fbo.getFBOHandler();
    const unsigned texture = fbo.getFBOTexture();
    glBindTexture(GL_TEXTURE_2D, 0);
    {
        GLCallCounter calls;
        fbo.resizeFBOSurface(kSize, kSize);
        EXPECT_EQ(calls.total(), 0);
    }
    EXPECT_EQ(fbo.getFBOHandler(), framebuffer);
    EXPECT_EQ(fbo.getFBOTexture(), texture);
    EXPECT_EQ(bound(GL_TEXTURE_BINDING_2D), 0);
    show(texture);  // the contents are still the red clear
    EXPECT_PIXEL_NEAR(pixel(30, 30), kRed, 0);

    // Another size redefines the texture and the depth storage, keeping the framebuffer.
    fbo.resizeFBOSurface(8, 4);
    EXPECT_EQ(fbo.getFBOHandler(), framebuffer);
    EXPECT_EQ(fbo.getFBOTexture(), texture);
    fbo.bindFBOSurface();
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(viewport[2], 8);
    EXPECT_EQ(viewport[3], 4);
    GLint depthName = depthAttachment();
    glBindRenderbuffer(GL_RENDERBUFFER, static_cast<GLuint>(depthName));
    GLint depthWidth = 0;
    glGetRenderbufferParameteriv(GL_RENDERBUFFER, GL_RENDERBUFFER_WIDTH, &depthWidth);
    EXPECT_EQ(depthWidth, 8);
    EXPECT_EQ(glCheckFramebufferStatus(GL_FRAMEBUFFER),
              static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE));
    fbo.clearFBOSurface();
    fill(-1, 1, 0, 0, 1, 0);
    EXPECT_PIXEL_NEAR(pixel(7, 3), kGreen, 0);
    fbo.unbindFBOSurface(kWidth, kHeight);
}

TEST_F(KNFBOTest, DestroyTwiceIsHarmlessAndAContextChangeForgetsWithoutDeleting) {
    KNFBO fbo;
    fbo.createFBOSurface(kSize, kSize);
    fbo.enableFBODepthBuffer();
    const unsigned framebuffer = fbo.getFBOHandler();
    const unsigned texture = fbo.getFBOTexture();
    fbo.destroyFBOSurface();
    EXPECT_FALSE(glIsFramebuffer(framebuffer));
    EXPECT_FALSE(glIsTexture(texture));
    EXPECT_EQ(fbo.getFBOHandler(), 0u);
    fbo.destroyFBOSurface();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));

    fbo.setClearColor(0, 1, 0, 1);
    fbo.createFBOSurface(kSize, kSize);
    const unsigned kept = fbo.getFBOHandler();
    fbo.contextChanged();
    EXPECT_EQ(fbo.getFBOHandler(), 0u);
    EXPECT_EQ(fbo.getFBOTexture(), 0u);
    EXPECT_TRUE(glIsFramebuffer(kept));  // forgotten, not deleted
    glDeleteFramebuffers(1, &kept);

    // After a real loss the stored size, options and clear colour rebuild the surface.
    fbo.createFBOSurface(kSize, kSize);
    loseContext();
    fbo.contextChanged();
    fbo.createFBOSurface(kSize, kSize);
    ASSERT_TRUE(glIsFramebuffer(fbo.getFBOHandler()));
    fbo.bindFBOSurface();
    EXPECT_PIXEL_NEAR(pixel(15, 15), kGreen, 0);
    fbo.unbindFBOSurface(kWidth, kHeight);
    solid.contextChanged();
}

TEST_F(KNFBOTest, EmptySizesAndDepthWithoutASurfaceAreRefusedWithOneLogLine) {
    KNFBO fbo;
    LogCapture log;
    fbo.createFBOSurface(0, kSize);
    EXPECT_EQ(fbo.getFBOHandler(), 0u);
    fbo.enableFBODepthBuffer();
    fbo.createFBOSurface(kSize, kSize);
    fbo.resizeFBOSurface(kSize, 0);
    EXPECT_EQ(log.messages(), (std::vector<std::string>{
                                  "KNFBO::createFBOSurface: size 0x16, no surface made",
                                  "KNFBO::enableFBODepthBuffer: no surface yet, depth left off",
                                  "KNFBO::resizeFBOSurface: size 16x0, surface kept at 16x16"}));
    fbo.bindFBOSurface();
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(viewport[3], static_cast<GLint>(kSize));
    EXPECT_EQ(depthAttachment(), 0);
    fbo.unbindFBOSurface(kWidth, kHeight);
}

}  // namespace
