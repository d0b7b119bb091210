#include "Kinetra/Layers/KNDrawRadialWaterBrush.h"

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

using Kinetra::KNDrawRadialWaterBrush;
using Kinetra::KNMesh;
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

// A disc of coverage 1 within 0.4 of the texture's centre, fading to 0 at 0.47.
std::vector<uint8_t> disc() {
    return texels(128, 128, [](int x, int y) {
        const double r = std::hypot(x + 0.5 - 64, y + 0.5 - 64) / 128;
        const double a = std::clamp((0.47 - r) / 0.07, 0.0, 1.0);
        return Texel{255, 255, 255, static_cast<uint8_t>(std::lround(255 * a))};
    });
}

class KNDrawRadialWaterBrushTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        KNTextureManager::ReleaseInstance();
        uploadTextures();
    }
    void TearDown() override { KNTextureManager::ReleaseInstance(); }

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

TEST_F(KNDrawRadialWaterBrushTest, DefaultsAndTheTrueRectangle) {
    KNDrawRadialWaterBrush brush;
    EXPECT_EQ(brush.getMaskTextureID(), 0xFFFFFFFFu);
    EXPECT_EQ(brush.getGraphTextureID(), 0xFFFFFFFFu);
    EXPECT_EQ(brush.getSurfaceWidth(), 1024);
    EXPECT_EQ(brush.getSurfaceHeight(), 768);
    EXPECT_FLOAT_EQ(brush.getRatio()[0], 1.0f);
    EXPECT_FLOAT_EQ(brush.getRatio()[1], 0.5625f);
    EXPECT_EQ(brush.getGraphPow(), 0.0f);
    EXPECT_EQ(brush.getGraphMultiply(), 0.0f);
    EXPECT_EQ(brush.getMesh(), nullptr);

    brush.setGraphPow(9);
    brush.initialize(300, 200);
    EXPECT_EQ(brush.getGraphPow(), 2.0f);
    EXPECT_EQ(brush.getGraphMultiply(), 4.0f);
    ASSERT_NE(brush.getMesh(), nullptr);
    const KNMesh& mesh = *brush.getMesh();
    brush.setRectAlign(1);
    brush.setSize(300, 200);
    brush.setSize(300, 200);
    ASSERT_EQ(mesh.vertex.size(), 4u);
    EXPECT_EQ(mesh.vertex[0].x, -150.0f);
    EXPECT_EQ(mesh.vertex[0].y, -100.0f);
    EXPECT_EQ(mesh.vertex[3].x, 150.0f);
    EXPECT_EQ(mesh.vertex[3].y, 100.0f);
    EXPECT_EQ(mesh.index, (std::vector<unsigned short>{0, 1, 2, 3}));
    ASSERT_EQ(mesh.uv.size(), 4u);
    EXPECT_EQ(mesh.uv[0].y, 1.0f);
    EXPECT_EQ(mesh.uv[3].x, 1.0f);

    // Initialising again starts from an empty mesh.
    brush.initialize(300, 200);
    EXPECT_EQ(mesh.uv.size(), 4u);
    EXPECT_EQ(mesh.index.size(), 4u);

    brush.setMaskTexture("mask");
    brush.setGraphTexture("tube");
    brush.resizeSurface(64.9f, 32);
    EXPECT_EQ(brush.getMaskTextureID(), 0xFFFFFFFFu);
    EXPECT_EQ(brush.getGraphTextureID(), 0xFFFFFFFFu);
    EXPECT_EQ(brush.getSurfaceWidth(), 64);
    EXPECT_FLOAT_EQ(mesh.vertex[3].x, 32.45f);
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
    const GLuint program = brush.getShaderManager()->getProgram();
    GLint unit = -1;
    glGetUniformiv(program, glGetUniformLocation(program, "uTube"), &unit);
    EXPECT_EQ(unit, 1);
    glActiveTexture(GL_TEXTURE1);
    GLint bound = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    EXPECT_EQ(static_cast<unsigned int>(bound), brush.getGraphTextureID());
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

TEST_F(KNDrawRadialWaterBrushTest, DrawsTheSameAfterALostContext) {
    KNDrawRadialWaterBrush brush;
    centreOn(brush, 12.5f, 40.5f);
    brush.setTimeStep(0.75f);
    brush.draw();
    const std::vector<uint8_t> before = gl().readPixels(0, 0, kWidth, kHeight);

    loseContext();
    glViewport(0, 0, kWidth, kHeight);
    glClear(GL_COLOR_BUFFER_BIT);
    brush.contextChanged();
    KNTextureManager::getInstancePtr()->contextChanged();
    LogCapture log;
    brush.draw();
    EXPECT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(pixel(20, 20), 0u);

    uploadTextures();
    centreOn(brush, 12.5f, 40.5f);
    brush.draw();
    EXPECT_EQ(gl().readPixels(0, 0, kWidth, kHeight), before);
}

TEST_F(KNDrawRadialWaterBrushTest, GuardsBadInput) {
    KNDrawRadialWaterBrush brush;
    LogCapture log;
    brush.draw();
    brush.setMaskTexture(nullptr);
    brush.setGraphTexture(nullptr);
    brush.initialize(64, 0);
    EXPECT_EQ(log.messages().size(), 4u);
    EXPECT_EQ(brush.getMaskTextureID(), 0xFFFFFFFFu);
    EXPECT_EQ(brush.getGraphPow(), 0.0f);
    EXPECT_EQ(pixel(20, 20), 0u);
}

TEST_F(KNDrawRadialWaterBrushTest, LeavesAFullSizeFrameToLookAt) {
    auto target = qam::test::boundTarget(kFrameWidth, kFrameHeight, {0, 0, 0, 255});
    namedTexture("disc", 128, 128, disc());
    // A profile strongest on a ring at 0.15 from the middle, within the reach of the field
    // (about 256 pixels where mediump is a half float: the squared length overflows beyond).
    namedTexture("ring", 128, 128, texels(128, 128, [](int x, int y) {
                     const double r = std::hypot(x + 0.5 - 64, y + 0.5 - 64) / 128;
                     const double p = std::clamp(1 - std::abs(r - 0.15) * 10, 0.0, 1.0);
                     return Texel{static_cast<uint8_t>(std::lround(255 * p)), 0, 0, 255};
                 }));
    KNDrawRadialWaterBrush brush;
    brush.initialize(kFrameWidth, kFrameHeight);
    brush.setRectAlign(1);
    brush.setSize(kFrameWidth, kFrameWidth);
    brush.setPosition(540, 960, 0);
    brush.setMaskTexture("disc");
    brush.setGraphTexture("ring");
    brush.setTimeStep(1);
    brush.draw();
    // On the ring, 162 pixels left of the centre: full strength, pointing right.
    const uint32_t ring = pixel(378, 960);
    EXPECT_NEAR(channel(ring, 24), 0.6 * 255, kLayerTolerance);
    EXPECT_NEAR(channel(ring, 16), 0.5 * 255, kLayerTolerance);
    EXPECT_GT(channel(ring, 8), 240);
    EXPECT_LT(channel(pixel(530, 960), 8), 10);
    EXPECT_TRUE(qam::test::leaveLayerFrame("KNDrawRadialWaterBrush", kFrameWidth, kFrameHeight));
}

}  // namespace
