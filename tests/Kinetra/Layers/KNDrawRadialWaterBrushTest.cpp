#include "Kinetra/Layers/KNDrawRadialWaterBrush.h"

#include "tests/Kinetra/Layers/LayerTestSupport.h"

namespace {

using namespace qam::test;

using Kinetra::KNDrawRadialWaterBrush;

class KNDrawRadialWaterBrushTest : public LayerTest {
  protected:
    void SetUp() override {
        LayerTest::SetUp();
        uploadTextures();
    }

    // "mask" opaque, "faint" at 0.4; "tube" red 1 on its left half and 64 / 255 on its right.
    static void uploadTextures() {
        namedTexture("mask", {255, 255, 255, 255});
        namedTexture("faint", {255, 255, 255, 102});
        namedTexture("tube", 2, 1, {255, 0, 0, 255, 64, 0, 0, 255});
    }

    // A 200 x 200 quad centred on (cx, cy): the 64 x 64 surface lies inside it.
    static void centreOn(KNDrawRadialWaterBrush& brush, float cx, float cy) {
        brush.initialize(kWidth, kHeight);
        brush.setMaskTexture("mask");
        brush.setGraphTexture("tube");
        brush.setRectAlign(1);
        brush.setSize(200, 200);
        brush.setPosition(cx, cy, 0);
    }
};

// The profile's power and multiplier initialize writes over any set before; a new surface
// forgets the profile too.
TEST_F(KNDrawRadialWaterBrushTest, ProfileValuesAndWhatANewSurfaceForgets) {
    KNDrawRadialWaterBrush brush;
    brush.setGraphPow(9);
    brush.initialize(300, 200);
    EXPECT_EQ(brush.getGraphPow(), 2.0f);
    EXPECT_EQ(brush.getGraphMultiply(), 4.0f);
    brush.setGraphTexture("tube");
    brush.resizeSurface(64, 32);
    EXPECT_EQ(brush.getGraphTextureID(), kUnset);
}

TEST_F(KNDrawRadialWaterBrushTest, PointsTowardsItsCentreWithoutACore) {
    KNDrawRadialWaterBrush brush;
    centreOn(brush, 50.5f, 32.5f);
    brush.setRatio(1, 1);
    brush.setTimeStep(0.5f);
    brush.draw();

    // 10 pixels left of the centre: 0.5 + 0.1 with no ramp; the tube's left half at full red.
    const uint32_t ten = pixel(40, 32);
    EXPECT_NEAR(channel(ten, 24), 0.6 * 255, kLayerTolerance);
    EXPECT_NEAR(channel(ten, 16), 0.5 * 255, kLayerTolerance);
    EXPECT_NEAR(channel(ten, 8), 0.5 * 255, kLayerTolerance);
    EXPECT_EQ(channel(ten, 0), 255);
    EXPECT_NEAR(channel(pixel(49, 32), 24), 0.6 * 255, kLayerTolerance);
    // 9.5 pixels right, over the tube's right half: strength 0.5 · 64 / 255.
    const uint32_t right = pixel(60, 32);
    EXPECT_NEAR(channel(right, 24), 0.4 * 255, kLayerTolerance);
    EXPECT_NEAR(channel(right, 8), 0.5 * 64, kLayerTolerance);

    // Each axis has its own ratio.
    brush.setRatio(2, 0.5f);
    glClear(GL_COLOR_BUFFER_BIT);
    brush.draw();
    EXPECT_NEAR(channel(pixel(40, 32), 24), 0.7 * 255, kLayerTolerance);
    EXPECT_NEAR(channel(pixel(50, 2), 16), 0.55 * 255, kLayerTolerance);
    EXPECT_NEAR(channel(pixel(50, 2), 24), 0.5 * 255, kLayerTolerance);

    // The graph power and multiplier are sent but leave the picture as it is.
    const std::vector<uint8_t> before = gl().readPixels(0, 0, kWidth, kHeight);
    brush.setGraphPow(7);
    brush.setGraphMultiply(-3);
    glClear(GL_COLOR_BUFFER_BIT);
    brush.draw();
    EXPECT_EQ(gl().readPixels(0, 0, kWidth, kHeight), before);

    // The mask on unit 0, the profile on unit 1.
    expectSamplers(brush.getShaderManager()->getProgram(),
                   {{"uMask", brush.getMaskTextureID()}, {"uTube", brush.getGraphTextureID()}});
}

TEST_F(KNDrawRadialWaterBrushTest, ClampsTheFade) {
    KNDrawRadialWaterBrush brush;
    centreOn(brush, 50.5f, 32.5f);
    brush.setMaskTexture("faint");
    struct Case {
        float alpha;
        double coverage;
    };
    for (const Case c : {Case{-2, 0.4}, Case{0.25f, 0.3}, Case{1, 0}, Case{1.5f, 0}}) {
        glClear(GL_COLOR_BUFFER_BIT);
        brush.setAlpha(c.alpha);
        brush.draw();
        EXPECT_NEAR(channel(pixel(40, 32), 0), c.coverage * 255, kLayerTolerance) << c.alpha;
    }
}

TEST_F(KNDrawRadialWaterBrushTest, GuardsBadInput) {
    KNDrawRadialWaterBrush brush;
    expectOneLogLineEach({[&] { brush.setMaskTexture(nullptr); },
                          [&] { brush.setGraphTexture(nullptr); },
                          [&] { brush.initialize(64, 0); }});
    EXPECT_EQ(brush.getMaskTextureID(), kUnset);
    EXPECT_EQ(brush.getGraphPow(), 0.0f);
}

}  // namespace
