#include "Kinetra/Layers/KNDrawRadialColorBrush.h"

#include <limits>

#include "tests/Kinetra/Layers/LayerTestSupport.h"
#include "tests/support/LogCapture.h"

namespace {

using namespace qam::test;

using Kinetra::KNDrawRadialColorBrush;

class KNDrawRadialColorBrushTest : public LayerTest {
  protected:
    // A brush over the 64 x 64 surface whose 200 x 200 quad is centred on (cx, cy), so that
    // the whole surface lies inside it.
    static void centreOn(KNDrawRadialColorBrush& brush, float cx, float cy) {
        brush.initialize(kWidth, kHeight);
        brush.setRectAlign(1);
        brush.setSize(200, 200);
        brush.setPosition(cx, cy, 0);
    }
};

TEST_F(KNDrawRadialColorBrushTest, PointsTowardsItsCentreWithASoftCore) {
    namedTexture("mask", {255, 255, 255, 255});
    KNDrawRadialColorBrush brush;
    centreOn(brush, 50.5f, 32.5f);
    brush.setMaskTexture("mask");
    brush.setRatio(1, 1);
    brush.setTimeStep(0.25f);
    brush.draw();

    // 10 pixels left of the centre, inside the core: 0.5 + 0.1 · 10 / 20 = 0.55.
    const uint32_t ten = pixel(40, 32);
    EXPECT_NEAR(channel(ten, 24), 0.55 * 255, kLayerTolerance);
    EXPECT_NEAR(channel(ten, 16), 0.5 * 255, kLayerTolerance);
    EXPECT_NEAR(channel(ten, 8), 0.25 * 255, kLayerTolerance);
    EXPECT_EQ(channel(ten, 0), 255);
    // 40 pixels left, outside it: 0.5 + 0.1.
    EXPECT_NEAR(channel(pixel(10, 32), 24), 0.6 * 255, kLayerTolerance);
    // 9.5 pixels right: 0.5 - 0.1 · 9.5 / 20.
    EXPECT_NEAR(channel(pixel(60, 32), 24), 0.4525 * 255, kLayerTolerance);
    // Straight below by 30 pixels the field points up: green 0.6, red unchanged.
    const uint32_t below = pixel(50, 2);
    EXPECT_NEAR(channel(below, 24), 0.5 * 255, kLayerTolerance);
    EXPECT_NEAR(channel(below, 16), 0.6 * 255, kLayerTolerance);
}

TEST_F(KNDrawRadialColorBrushTest, ScalesTheFieldByTheScreenRatio) {
    namedTexture("mask", {255, 255, 255, 255});
    KNDrawRadialColorBrush brush;
    centreOn(brush, 32.5f, 50.5f);
    brush.setMaskTexture("mask");
    brush.draw();

    // A new brush sends (1, 0.5625).
    const GLuint program = brush.getShaderManager()->getProgram();
    GLfloat ratio[2] = {0, 0};
    glGetUniformfv(program, glGetUniformLocation(program, "uScreenRatio"), ratio);
    EXPECT_FLOAT_EQ(ratio[0], 1.0f);
    EXPECT_FLOAT_EQ(ratio[1], 0.5625f);
    // 40 pixels below the centre: green 0.5 + 0.1 · 0.5625; 20 to the left: red 0.5 + 0.1.
    EXPECT_NEAR(channel(pixel(32, 10), 16), (0.5 + 0.1 * 0.5625) * 255, kLayerTolerance);
    EXPECT_NEAR(channel(pixel(12, 50), 24), 0.6 * 255, kLayerTolerance);
    EXPECT_EQ(channel(pixel(12, 50), 8), 0);  // time step 0

    brush.setRatio(-2, 0.5f);
    glClear(GL_COLOR_BUFFER_BIT);
    brush.draw();
    EXPECT_NEAR(channel(pixel(12, 50), 24), 0.3 * 255, kLayerTolerance);
    EXPECT_NEAR(channel(pixel(32, 10), 16), 0.55 * 255, kLayerTolerance);
}

TEST_F(KNDrawRadialColorBrushTest, ClampsTheFadeAndBlendsOverTheTarget) {
    namedTexture("mask", {255, 255, 255, 102});  // coverage 0.4
    KNDrawRadialColorBrush brush;
    centreOn(brush, 50.5f, 32.5f);
    brush.setMaskTexture("mask");
    brush.setRatio(1, 1);

    struct Case {
        float alpha;
        double coverage;
    };
    // 1 - uAlpha clamped to [0, 1] before it scales the mask: -1 gives 0.4, not 0.8.
    for (const Case c : {Case{-1, 0.4}, Case{0, 0.4}, Case{0.5f, 0.2}, Case{1, 0}, Case{3, 0}}) {
        glClear(GL_COLOR_BUFFER_BIT);
        brush.setAlpha(c.alpha);
        brush.draw();
        EXPECT_NEAR(channel(pixel(40, 32), 0), c.coverage * 255, kLayerTolerance) << c.alpha;
        EXPECT_NEAR(channel(pixel(40, 32), 24), 0.55 * c.coverage * 255, kLayerTolerance)
            << c.alpha;
    }

    // Colour by source alpha over the target, alpha by one over the rest.
    glClearColor(0, 0, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    brush.setAlpha(0);
    brush.setTimeStep(1);
    brush.draw();
    const uint32_t over = pixel(40, 32);
    EXPECT_NEAR(channel(over, 24), 0.55 * 0.4 * 255, kLayerTolerance);
    EXPECT_NEAR(channel(over, 8), (0.4 + 0.6) * 255, kLayerTolerance);
    EXPECT_EQ(channel(over, 0), 255);
    brush.setAlpha(1);
    brush.draw();
    EXPECT_PIXEL_NEAR(pixel(40, 32), over, 0);
}

TEST_F(KNDrawRadialColorBrushTest, GuardsBadInputAndBindsUnsetTexturesAsTheyAre) {
    KNDrawRadialColorBrush brush;
    expectOneLogLineEach({[&] { brush.setMaskTexture(nullptr); }, [&] { brush.initialize(0, 64); },
                          [&] { brush.setSize(std::numeric_limits<float>::quiet_NaN(), 10); },
                          [&] { brush.resizeSurface(1e20f, 10); }});
    EXPECT_EQ(brush.getMaskTextureID(), kUnset);
    EXPECT_EQ(brush.getMesh(), nullptr);

    // The unset mask and 0 are bound as they are: GL samples opaque black from them, so the
    // whole quad is covered.
    LogCapture log;
    centreOn(brush, 50.5f, 32.5f);
    brush.setRatio(1, 1);
    brush.draw();
    EXPECT_NEAR(channel(pixel(40, 32), 24), 0.55 * 255, kLayerTolerance);
    EXPECT_EQ(channel(pixel(40, 32), 0), 255);
    namedTexture("clear", {0, 0, 0, 0});
    brush.setMaskTexture("clear");
    glClear(GL_COLOR_BUFFER_BIT);
    brush.draw();
    EXPECT_EQ(pixel(40, 32), 0u);
    EXPECT_TRUE(log.messages().empty());
}

}  // namespace
