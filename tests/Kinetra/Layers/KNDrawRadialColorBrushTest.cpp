#include "Kinetra/Layers/KNDrawRadialColorBrush.h"

#include <GLES2/gl2.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNShaderManager.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "tests/Kinetra/Layers/LayerTestSupport.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace {

using Kinetra::KNDrawRadialColorBrush;
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

void expectVertex(const KNMesh& mesh, size_t i, float x, float y) {
    ASSERT_LT(i, mesh.vertex.size());
    EXPECT_FLOAT_EQ(mesh.vertex[i].x, x) << "vertex " << i;
    EXPECT_FLOAT_EQ(mesh.vertex[i].y, y) << "vertex " << i;
    EXPECT_EQ(mesh.vertex[i].z, 0.0f) << "vertex " << i;
}

// A disc of coverage 1 within 0.4 of the texture's centre, fading to 0 at 0.47.
std::vector<uint8_t> disc() {
    return texels(128, 128, [](int x, int y) {
        const double r = std::hypot(x + 0.5 - 64, y + 0.5 - 64) / 128;
        const double a = std::clamp((0.47 - r) / 0.07, 0.0, 1.0);
        return Texel{255, 255, 255, static_cast<uint8_t>(std::lround(255 * a))};
    });
}

class KNDrawRadialColorBrushTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        KNTextureManager::ReleaseInstance();
    }
    void TearDown() override { KNTextureManager::ReleaseInstance(); }

    // A brush over the 64 x 64 surface whose 200 x 200 quad is centred on (cx, cy), so that
    // the whole surface lies inside it.
    static void centreOn(KNDrawRadialColorBrush& brush, float cx, float cy) {
        brush.initialize(kWidth, kHeight);
        brush.setRectAlign(1);
        brush.setSize(200, 200);
        brush.setPosition(cx, cy, 0);
    }
};

TEST_F(KNDrawRadialColorBrushTest, BuildsTheTrueRectangleAndRefillsItsIndices) {
    KNDrawRadialColorBrush brush;
    EXPECT_EQ(brush.getMesh(), nullptr);
    EXPECT_EQ(brush.getMaskTextureID(), 0xFFFFFFFFu);
    EXPECT_EQ(brush.getSurfaceWidth(), 1024);
    EXPECT_EQ(brush.getSurfaceHeight(), 768);
    EXPECT_EQ(brush.getRectAlign(), 0);
    EXPECT_EQ(brush.getTimeStep(), 0.0f);
    EXPECT_EQ(brush.getAlpha(), 0.0f);
    EXPECT_FLOAT_EQ(brush.getRatio()[0], 1.0f);
    EXPECT_FLOAT_EQ(brush.getRatio()[1], 0.5625f);

    brush.initialize(300, 200);
    ASSERT_NE(brush.getMesh(), nullptr);
    const KNMesh& mesh = *brush.getMesh();
    EXPECT_EQ(brush.getSurfaceWidth(), 300);
    EXPECT_EQ(brush.getSurfaceHeight(), 200);
    expectVertex(mesh, 0, 0, 0);
    expectVertex(mesh, 1, 300, 0);
    expectVertex(mesh, 2, 0, 200);
    expectVertex(mesh, 3, 300, 200);
    ASSERT_EQ(mesh.uv.size(), 4u);
    const float base[4][2] = {{0, 1}, {1, 1}, {0, 0}, {1, 0}};
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(mesh.uv[i].x, base[i][0]);
        EXPECT_EQ(mesh.uv[i].y, base[i][1]);
    }

    // Centred: the fourth corner is (x0 + width, y0 + height), not the brushes' x0-based one.
    brush.setRectAlign(1);
    EXPECT_EQ(mesh.vertex[3].y, 200.0f);  // taken at the next rebuild only
    brush.setSize(300, 200);
    expectVertex(mesh, 0, -150, -100);
    expectVertex(mesh, 1, 150, -100);
    expectVertex(mesh, 2, -150, 100);
    expectVertex(mesh, 3, 150, 100);
    brush.setSize(300, 200);
    brush.setSize(300, 200);
    EXPECT_EQ(mesh.index, (std::vector<unsigned short>{0, 1, 2, 3}));
    EXPECT_EQ(mesh.vertex.size(), 4u);

    // setPosition rebuilds at the stored whole-pixel size.
    brush.setSize(300.7f, 200.2f);
    expectVertex(mesh, 3, 150.35f, 100.1f);
    brush.setPosition(10, 20, 0);
    expectVertex(mesh, 0, -140, -80);
    expectVertex(mesh, 3, 160, 120);

    // A new surface size keeps the coordinates and forgets the mask.
    const unsigned int mask = namedTexture("mask", {255, 255, 255, 255});
    brush.setMaskTexture("mask");
    EXPECT_EQ(brush.getMaskTextureID(), mask);
    brush.resizeSurface(400, 100);
    EXPECT_EQ(brush.getMaskTextureID(), 0xFFFFFFFFu);
    EXPECT_EQ(brush.getSurfaceWidth(), 400);
    expectVertex(mesh, 0, -190, -30);
    expectVertex(mesh, 3, 210, 70);
    EXPECT_EQ(mesh.uv.size(), 4u);
}

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

TEST_F(KNDrawRadialColorBrushTest, DrawsTheSameAfterALostContext) {
    namedTexture("mask", {255, 255, 255, 200});
    KNDrawRadialColorBrush brush;
    centreOn(brush, 20.5f, 40.5f);
    brush.setMaskTexture("mask");
    brush.setTimeStep(0.5f);
    brush.draw();
    const std::vector<uint8_t> before = gl().readPixels(0, 0, kWidth, kHeight);

    loseContext();
    glViewport(0, 0, kWidth, kHeight);
    glClear(GL_COLOR_BUFFER_BIT);
    brush.contextChanged();
    KNTextureManager::getInstancePtr()->contextChanged();
    {
        // Until it is initialised again it draws nothing and says so.
        LogCapture log;
        brush.draw();
        EXPECT_EQ(log.messages().size(), 1u);
        EXPECT_EQ(pixel(40, 32), 0u);
    }
    namedTexture("mask", {255, 255, 255, 200});
    brush.setMaskTexture("mask");
    centreOn(brush, 20.5f, 40.5f);
    brush.draw();
    EXPECT_EQ(gl().readPixels(0, 0, kWidth, kHeight), before);
}

TEST_F(KNDrawRadialColorBrushTest, GuardsBadInputAndBindsUnsetTexturesAsTheyAre) {
    KNDrawRadialColorBrush brush;
    {
        LogCapture log;
        brush.draw();  // never initialised
        EXPECT_EQ(log.messages().size(), 1u);
        EXPECT_EQ(pixel(10, 10), 0u);
    }
    {
        LogCapture log;
        brush.setMaskTexture(nullptr);
        brush.initialize(0, 64);
        brush.setSize(std::numeric_limits<float>::quiet_NaN(), 10);
        brush.resizeSurface(1e20f, 10);
        EXPECT_EQ(log.messages().size(), 4u);
        EXPECT_EQ(brush.getMaskTextureID(), 0xFFFFFFFFu);
        EXPECT_EQ(brush.getSurfaceWidth(), 1024);
        EXPECT_EQ(brush.getMesh(), nullptr);
    }

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

TEST_F(KNDrawRadialColorBrushTest, LeavesAFullSizeFrameToLookAt) {
    auto target = qam::test::boundTarget(kFrameWidth, kFrameHeight, {0, 0, 0, 255});
    namedTexture("disc", 128, 128, disc());
    KNDrawRadialColorBrush brush;
    brush.initialize(kFrameWidth, kFrameHeight);
    brush.setRectAlign(1);
    brush.setSize(kFrameWidth, kFrameWidth);
    brush.setPosition(540, 960, 0);
    brush.setMaskTexture("disc");
    brush.setTimeStep(0.8f);
    brush.draw();
    // 200 pixels left of the centre. Beyond about 256 pixels the squared length overflows
    // mediump where it is a half float (llvmpipe's is) and the field reads (0.5, 0.5).
    const uint32_t left = pixel(340, 960);
    EXPECT_NEAR(channel(left, 24), 0.6 * 255, kLayerTolerance);
    EXPECT_NEAR(channel(left, 16), 0.5 * 255, kLayerTolerance);
    EXPECT_NEAR(channel(left, 8), 0.8 * 255, kLayerTolerance);
    EXPECT_EQ(pixel(5, 5), 0x000000FFu);
    EXPECT_TRUE(qam::test::leaveLayerFrame("KNDrawRadialColorBrush", kFrameWidth, kFrameHeight));
}

}  // namespace
