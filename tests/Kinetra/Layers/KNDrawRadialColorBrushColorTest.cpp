#include "Kinetra/Layers/KNDrawRadialColorBrushColor.h"

#include "tests/Kinetra/Layers/LayerTestSupport.h"

namespace {

using namespace qam::test;

using Kinetra::KNDrawRadialColorBrushColor;

constexpr uint32_t kRed = 0xFF0000FFu;
constexpr uint32_t kBlue = 0x0000FFFFu;
constexpr uint32_t kWhite = 0xFFFFFFFFu;

class KNDrawRadialColorBrushColorTest : public LayerTest {
  protected:
    void SetUp() override {
        LayerTest::SetUp();
        uploadTextures();
    }

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
    place(brush, 16, 16);
    brush.draw();
    // The quad spans 8 to 24; its left half is fully covered, in the bottom-left colour.
    EXPECT_EQ(pixel(10, 12), kRed);
    // The right half at 0.4: colour by source alpha, and alpha by source alpha too.
    const uint32_t faint = pixel(20, 12);
    EXPECT_NEAR(channel(faint, 24), 0.4 * 255, kLayerTolerance);
    EXPECT_NEAR(channel(faint, 0), 0.16 * 255, kLayerTolerance);
    EXPECT_EQ(pixel(30, 30), 0u);
    EXPECT_EQ(pixel(4, 12), 0u);
    expectSamplers(brush.getShaderManager()->getProgram(),
                   {{"uMask", brush.getMaskTextureID()}, {"uColor", brush.getColorTextureID()}});

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

    // A new size forgets the colour image too; the reciprocals follow the new screen over the
    // ratio.
    brush.resizeSurface(32, 128);
    EXPECT_EQ(brush.getColorTextureID(), kUnset);
    brush.setResolutionRatio(0.5f);
    EXPECT_FLOAT_EQ(brush.getInvScreenX(), 1.0f / 16);
    EXPECT_FLOAT_EQ(brush.getInvScreenY(), 1.0f / 64);
}

TEST_F(KNDrawRadialColorBrushColorTest, GuardsBadInput) {
    KNDrawRadialColorBrushColor brush;
    place(brush, 16, 16);
    const unsigned int mask = brush.getMaskTextureID();
    expectOneLogLineEach({[&] { brush.setMaskTexture(nullptr); },
                          [&] { brush.setColorTexture(nullptr); },
                          [&] { brush.setResolutionRatio(0); }, [&] { brush.setSize(-5, 10); }});
    EXPECT_EQ(brush.getMaskTextureID(), mask);
    EXPECT_FLOAT_EQ(brush.getInvScreenX(), 1.0f / 64);
    brush.draw();
    EXPECT_EQ(pixel(10, 12), kRed);
}

}  // namespace
