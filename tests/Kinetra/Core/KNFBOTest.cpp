#include "Kinetra/Core/KNFBO.h"

#include "tests/Kinetra/Core/CoreTestSupport.h"

namespace {

using KNFBOTest = CoreTest;
constexpr unsigned kSize = 16;

GLint depthAttachment() {
    GLint name = -1;
    glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT,
                                          GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME, &name);
    return name;
}

TEST_F(KNFBOTest, RenderedIntoThenSampledAsATexture) {
    Kinetra::KNFBO fbo;
    glClearColor(1, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    fbo.clearFBOSurface();  // before any surface: transparent black on whatever is bound
    EXPECT_EQ(pixel(5, 5), kBlack);
    fbo.setClearColor(0, 0, 1, 1);
    fbo.createFBOSurface(kSize, kSize);
    EXPECT_EQ(get(GL_FRAMEBUFFER_BINDING), 0);
    EXPECT_EQ(get(GL_TEXTURE_BINDING_2D), static_cast<GLint>(fbo.getFBOTexture()));
    EXPECT_EQ(std::pair(texParameter(GL_TEXTURE_WRAP_S), texParameter(GL_TEXTURE_MAG_FILTER)),
              std::pair(GLint{GL_CLAMP_TO_EDGE}, GLint{GL_LINEAR}));
    fbo.bindFBOSurface();
    EXPECT_EQ(get(GL_FRAMEBUFFER_BINDING), static_cast<GLint>(fbo.getFBOHandler()));
    EXPECT_EQ(viewport(), (std::vector<GLint>{0, 0, kSize, kSize}));
    EXPECT_EQ(pixel(8, 8), kBlue);  // cleared when made
    paint(kRed, -1, 0);
    fbo.unbindFBOSurface(kWidth, kHeight);
    EXPECT_EQ(get(GL_FRAMEBUFFER_BINDING), 0);
    EXPECT_EQ(viewport(), (std::vector<GLint>{0, 0, kWidth, kHeight}));
    show(fbo.getFBOTexture());
    EXPECT_EQ(std::pair(pixel(5, 30), pixel(58, 30)), std::pair(kRed, kBlue));

    // Options apply when a surface is made.
    Kinetra::KNFBO options;
    options.setFBOTextureWrapOption(GL_REPEAT);
    options.setFBOTextureMagFilterOption(GL_NEAREST);
    options.setFBOTextureDataType(GL_UNSIGNED_SHORT_4_4_4_4);
    options.createFBOSurface(kSize, kSize);
    EXPECT_EQ((std::vector<GLint>{texParameter(GL_TEXTURE_WRAP_S), texParameter(GL_TEXTURE_WRAP_T),
                                  texParameter(GL_TEXTURE_MIN_FILTER),
                                  texParameter(GL_TEXTURE_MAG_FILTER)}),
              (std::vector<GLint>{GL_REPEAT, GL_REPEAT, GL_NEAREST, GL_NEAREST}));
    options.bindFBOSurface();
    EXPECT_EQ(get(GL_RED_BITS), 4);
}

TEST_F(KNFBOTest, DepthBufferIsMadeOnceClearedWithTheSurfaceAndKeptWhileOff) {
    Kinetra::KNFBO fbo;
    fbo.createFBOSurface(kSize, kSize);
    GLCallCounter calls;
    fbo.enableFBODepthBuffer();
    fbo.enableFBODepthBuffer();
    EXPECT_EQ(std::pair(calls.count("glGenRenderbuffers"), calls.count("glRenderbufferStorage")),
              std::pair(1, 1));
    fbo.bindFBOSurface();
    const GLint depth = depthAttachment();
    ASSERT_GT(depth, 0);
    fbo.clearFBOSurface();
    glEnable(GL_DEPTH_TEST);  // a far quad after a near one stays hidden until the next clear
    paint(kRed, -1, 1, -0.5f);
    paint(kGreen, -1, 1, 0.5f);
    EXPECT_EQ(pixel(8, 8), kRed);
    fbo.clearFBOSurface();
    paint(kGreen, -1, 1, 0.5f);
    EXPECT_EQ(pixel(8, 8), kGreen);

    fbo.disableFBODepthBuffer();  // detached, not deleted
    fbo.bindFBOSurface();
    EXPECT_EQ(depthAttachment(), 0);
    EXPECT_TRUE(glIsRenderbuffer(static_cast<GLuint>(depth)));
    fbo.enableFBODepthBuffer();  // on again: the same renderbuffer
    fbo.bindFBOSurface();
    EXPECT_EQ(std::pair(depthAttachment(), calls.count("glGenRenderbuffers")), std::pair(depth, 1));
    glDisable(GL_DEPTH_TEST);

    fbo.resizeFBOSurface(kSize, kSize);  // the same size: nothing to do
    EXPECT_EQ(std::pair(calls.count("glTexImage2D"), calls.count("glRenderbufferStorage")),
              std::pair(0, 1));
    fbo.resizeFBOSurface(8, 4);  // another: new storage for the texture and the depth
    fbo.bindFBOSurface();
    EXPECT_EQ(viewport(), (std::vector<GLint>{0, 0, 8, 4}));
    GLint depthWidth = 0;
    glBindRenderbuffer(GL_RENDERBUFFER, static_cast<GLuint>(depth));
    glGetRenderbufferParameteriv(GL_RENDERBUFFER, GL_RENDERBUFFER_WIDTH, &depthWidth);
    EXPECT_EQ(depthWidth, 8);
    EXPECT_EQ(glCheckFramebufferStatus(GL_FRAMEBUFFER),
              static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE));

    const unsigned framebuffer = fbo.getFBOHandler(), texture = fbo.getFBOTexture();
    fbo.destroyFBOSurface();
    fbo.destroyFBOSurface();  // twice is harmless
    EXPECT_EQ((std::vector<GLboolean>{glIsFramebuffer(framebuffer), glIsTexture(texture),
                                      glIsRenderbuffer(static_cast<GLuint>(depth))}),
              std::vector<GLboolean>(3, GL_FALSE));
}

TEST_F(KNFBOTest, AContextChangeForgetsWithoutDeletingAndEmptySizesGoToGLAsGiven) {
    Kinetra::KNFBO fbo;
    fbo.setClearColor(0, 1, 0, 1);
    fbo.createFBOSurface(kSize, kSize);
    const unsigned kept = fbo.getFBOHandler();
    fbo.contextChanged();
    EXPECT_EQ(std::pair(fbo.getFBOHandler(), fbo.getFBOTexture()), std::pair(0u, 0u));
    EXPECT_TRUE(glIsFramebuffer(kept));
    glDeleteFramebuffers(1, &kept);
    loseContext();
    fbo.createFBOSurface(kSize, kSize);  // with the stored clear colour
    fbo.bindFBOSurface();
    EXPECT_EQ(pixel(15, 15), kGreen);

    // A depth buffer before any surface is made but attaches to nothing (GL refuses
    // framebuffer 0); an empty surface is made all the same, incomplete until resized.
    Kinetra::KNFBO empty;
    GLCallCounter calls;
    empty.enableFBODepthBuffer();
    empty.createFBOSurface(0, kSize);
    empty.bindFBOSurface();
    EXPECT_NE(glCheckFramebufferStatus(GL_FRAMEBUFFER),
              static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE));
    empty.resizeFBOSurface(kSize, kSize);  // depth is on: its storage is resized too
    EXPECT_EQ(calls.count("glRenderbufferStorage"), 2);
    empty.bindFBOSurface();
    EXPECT_EQ(glCheckFramebufferStatus(GL_FRAMEBUFFER),
              static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE));
    EXPECT_EQ(depthAttachment(), 0);
}

}  // namespace
