#include "Kinetra/Layers/KNDrawRadialColorBrushColor.h"

#include <GLES2/gl2.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNShaderManager.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "tests/Kinetra/Layers/LayerTestSupport.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace {

using Kinetra::KNDrawRadialColorBrushColor;
using Kinetra::KNTextureManager;
using qam::test::channel;
using qam::test::GLTest;
using qam::test::kFrameHeight;
using qam::test::kFrameWidth;
using qam::test::kLayerTolerance;
using qam::test::LogCapture;
using qam::test::namedTexture;
using qam::test::Texel;
using qam::test::texels;

constexpr uint32_t kRed = 0xFF0000FFu;
constexpr uint32_t kBlue = 0x0000FFFFu;
constexpr uint32_t kWhite = 0xFFFFFFFFu;

// A disc of coverage 1 within 0.4 of the texture's centre, fading to 0 at 0.47.
std::vector<uint8_t> disc() {
    return texels(128, 128, [](int x, int y) {
        const double r = std::hypot(x + 0.5 - 64, y + 0.5 - 64) / 128;
        const double a = std::clamp((0.47 - r) / 0.07, 0.0, 1.0);
        return Texel{255, 255, 255, static_cast<uint8_t>(std::lround(255 * a))};
    });
}

class KNDrawRadialColorBrushColorTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        KNTextureManager::ReleaseInstance();
        uploadTextures();
    }
    void TearDown() override { KNTextureManager::ReleaseInstance(); }

    // "palette": red, green / blue, white, bottom row first, one quadrant of the screen each.
    // "mask": the left half opaque, the right half at 0.4.
    static void uploadTextures() {
        namedTexture("palette", 2, 2,
                     {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 255});
        namedTexture("mask", 2, 1, {0, 0, 0, 255, 0, 0, 0, 102});
    }

    // A 16 x 16 quad centred on (x, y) of a 64 x 64 surface, colour image over one screen.
    static void place(KNDrawRadialColorBrushColor& brush, float x, float y) {
        brush.initialize(kWidth, kHeight);
        brush.setMaskTexture("mask");
        brush.setColorTexture("palette");
        brush.setResolutionRatio(1);
        brush.setRectAlign(1);
        brush.setSize(16, 16);
        brush.setPosition(x, y, 0);
    }
};

TEST_F(KNDrawRadialColorBrushColorTest, FillsTheMaskWithAColourFixedToTheScreen) {
    KNDrawRadialColorBrushColor brush;
    EXPECT_EQ(brush.getMaskTextureID(), 0xFFFFFFFFu);
    EXPECT_EQ(brush.getColorTextureID(), 0xFFFFFFFFu);
    EXPECT_EQ(brush.getResolutionRatio(), 0.0f);
    EXPECT_EQ(brush.getInvScreenX(), 0.0f);
    EXPECT_EQ(brush.getSurfaceWidth(), 1024);
    EXPECT_EQ(brush.getSurfaceHeight(), 768);

    place(brush, 16, 16);
    EXPECT_FLOAT_EQ(brush.getInvScreenX(), 1.0f / 64);
    EXPECT_FLOAT_EQ(brush.getInvScreenY(), 1.0f / 64);
    EXPECT_EQ(brush.getMesh()->index.size(), 4u);
    brush.draw();
    // The quad spans 8 to 24; its left half is fully covered, in the bottom-left colour.
    EXPECT_EQ(pixel(10, 12), kRed);
    // The right half at 0.4: colour by source alpha, and alpha by source alpha too.
    const uint32_t faint = pixel(20, 12);
    EXPECT_NEAR(channel(faint, 24), 0.4 * 255, kLayerTolerance);
    EXPECT_NEAR(channel(faint, 0), 0.16 * 255, kLayerTolerance);
    EXPECT_EQ(pixel(30, 30), 0u);
    EXPECT_EQ(pixel(4, 12), 0u);
    const GLuint program = brush.getShaderManager()->getProgram();
    GLint unit = -1;
    glGetUniformiv(program, glGetUniformLocation(program, "uColor"), &unit);
    EXPECT_EQ(unit, 1);

    // Moved, the mask shows the colour of the screen quadrant it is over.
    brush.setPosition(48, 48, 0);
    brush.draw();
    EXPECT_EQ(pixel(42, 50), kWhite);
    brush.setPosition(16, 48, 0);
    brush.draw();
    EXPECT_EQ(pixel(10, 50), kBlue);

    // With the image over two screens, this screen shows only its bottom-left quarter.
    glClear(GL_COLOR_BUFFER_BIT);
    brush.setResolutionRatio(2);
    EXPECT_FLOAT_EQ(brush.getInvScreenY(), 1.0f / 128);
    brush.draw();
    EXPECT_EQ(pixel(10, 50), kRed);
}

TEST_F(KNDrawRadialColorBrushColorTest, WithoutAResolutionRatioShowsTheCornerTexel) {
    KNDrawRadialColorBrushColor brush;
    brush.initialize(kWidth, kHeight);
    brush.setMaskTexture("mask");
    brush.setColorTexture("palette");
    brush.draw();
    // The quad covers the surface; every fragment reads texel (0, 0).
    EXPECT_EQ(pixel(10, 60), kRed);
    EXPECT_EQ(pixel(20, 40), kRed);

    // The colour image by id, and a new size that forgets both textures.
    const unsigned int palette = KNTextureManager::getInstancePtr()->getTextureID("palette");
    brush.setColorTextureID(7);
    EXPECT_EQ(brush.getColorTextureID(), 7u);
    brush.setColorTextureID(palette);
    brush.resizeSurface(32, 128);
    EXPECT_EQ(brush.getMaskTextureID(), 0xFFFFFFFFu);
    EXPECT_EQ(brush.getColorTextureID(), 0xFFFFFFFFu);
    EXPECT_EQ(brush.getScreenSize()[0], 32.0f);
    EXPECT_EQ(brush.getScreenSize()[1], 128.0f);
    brush.setResolutionRatio(0.5f);
    EXPECT_FLOAT_EQ(brush.getInvScreenX(), 1.0f / 16);
    EXPECT_FLOAT_EQ(brush.getInvScreenY(), 1.0f / 64);
}

TEST_F(KNDrawRadialColorBrushColorTest, DrawsTheSameAfterALostContext) {
    KNDrawRadialColorBrushColor brush;
    place(brush, 40, 24);
    brush.draw();
    const std::vector<uint8_t> before = gl().readPixels(0, 0, kWidth, kHeight);

    loseContext();
    glViewport(0, 0, kWidth, kHeight);
    glClear(GL_COLOR_BUFFER_BIT);
    brush.contextChanged();
    KNTextureManager::getInstancePtr()->contextChanged();
    uploadTextures();
    place(brush, 40, 24);
    brush.draw();
    EXPECT_EQ(gl().readPixels(0, 0, kWidth, kHeight), before);
}

TEST_F(KNDrawRadialColorBrushColorTest, GuardsBadInput) {
    KNDrawRadialColorBrushColor brush;
    LogCapture log;
    brush.draw();
    EXPECT_EQ(log.messages().size(), 1u);

    place(brush, 16, 16);
    const unsigned int mask = brush.getMaskTextureID();
    brush.setMaskTexture(nullptr);
    brush.setColorTexture(nullptr);
    brush.setResolutionRatio(0);
    brush.setSize(-5, 10);
    EXPECT_EQ(log.messages().size(), 5u);
    EXPECT_EQ(brush.getMaskTextureID(), mask);
    EXPECT_FLOAT_EQ(brush.getInvScreenX(), 1.0f / 64);
    brush.draw();
    EXPECT_EQ(pixel(10, 12), kRed);
    EXPECT_EQ(log.messages().size(), 5u);
}

TEST_F(KNDrawRadialColorBrushColorTest, LeavesAFullSizeFrameToLookAt) {
    auto target = qam::test::boundTarget(kFrameWidth, kFrameHeight, {0, 0, 0, 255});
    namedTexture("disc", 128, 128, disc());
    // Red across, green up the screen, blue falling across; 4 · index, read at u as 256 u - 2.
    KNTextureManager::getInstancePtr()->setTextureMagFilterOption(GL_LINEAR);
    std::vector<uint8_t> colours = texels(64, 64, [](int x, int y) {
        return Texel{static_cast<uint8_t>(4 * x), static_cast<uint8_t>(4 * y),
                     static_cast<uint8_t>(252 - 4 * x), 255};
    });
    KNTextureManager::getInstancePtr()->setTexture("colours", colours.data(), 64, 64);
    KNDrawRadialColorBrushColor brush;
    brush.initialize(kFrameWidth, kFrameHeight);
    brush.setRectAlign(1);
    brush.setSize(kFrameWidth, kFrameWidth);
    brush.setPosition(540, 960, 0);
    brush.setMaskTexture("disc");
    brush.setColorTexture("colours");
    brush.setResolutionRatio(1);
    brush.draw();
    // The screen's middle reads the image's middle.
    const uint32_t middle = pixel(540, 960);
    EXPECT_NEAR(channel(middle, 24), 256 * 540.5 / 1080 - 2, kLayerTolerance);
    EXPECT_NEAR(channel(middle, 16), 256 * 960.5 / 1920 - 2, kLayerTolerance);
    EXPECT_EQ(pixel(5, 5), 0x000000FFu);
    EXPECT_TRUE(
        qam::test::leaveLayerFrame("KNDrawRadialColorBrushColor", kFrameWidth, kFrameHeight));
}

}  // namespace
