
#include <cmath>

#include "Kinetra/Core/KNTextureManager.h"
#include "Kinetra/Layers/KNDrawAdvectColorBrush.h"
#include "Kinetra/Layers/KNDrawRadialColorBrush.h"
#include "tests/Kinetra/Layers/LayerTestSupport.h"

namespace {

using namespace qam::test;

using Kinetra::KNDrawAdvectColorBrush;
using Kinetra::KNDrawRadialColorBrush;
using Kinetra::KNFBO;
using Kinetra::KNTextureManager;

constexpr int kSize = 128;
constexpr int kRow = 64;         // the field's centre row: the field is horizontal there
constexpr float kCentreX = 112;  // the field points right, towards x = 112
constexpr int kEdge = 48;        // red left of it, black from it on
constexpr int kFrames = 8;

// Away from its core the radial brush writes red 0.5 + 0.1 towards the centre; the advect
// brush fetches from (0.6 - 0.5) · 10 · 9.2625 · 0.0021 of the surface upstream, towards the
// centre, so colour flows away from the centre by that much each frame.
constexpr double kFlowPerFrame = 0.1 * 10 * 9.2625 * 0.0021 * kSize;  // 2.49 pixels

// A target that advects and a target that holds the previous frame, swapped every frame.
class AdvectPingPongTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        KNTextureManager::ReleaseInstance();
    }
    void TearDown() override { KNTextureManager::ReleaseInstance(); }

    static std::unique_ptr<KNFBO> target() {
        auto fbo = std::make_unique<KNFBO>();
        fbo->createFBOSurface(kSize, kSize);
        return fbo;
    }

    // The red channel of row kRow of the bound target.
    static std::vector<int> redRow() {
        std::vector<uint8_t> rgba(kSize * 4);
        glReadPixels(0, kRow, kSize, 1, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
        std::vector<int> red(kSize);
        for (int x = 0; x < kSize; ++x) {
            red[x] = rgba[x * 4];
        }
        return red;
    }
};

TEST_F(AdvectPingPongTest, ColourFlowsAwayFromTheRadialCentreFrameAfterFrame) {
    // The field: a radial colour brush over the whole surface, centred right of the edge.
    std::unique_ptr<KNFBO> field = target();
    namedTexture("mask", Texel{255, 255, 255, 255});
    KNDrawRadialColorBrush radial;
    radial.initialize(kSize, kSize);
    radial.setMaskTexture("mask");
    radial.setRatio(1, 1);
    radial.setTimeStep(1);  // full strength
    radial.setRectAlign(1);
    radial.setSize(4 * kSize, 4 * kSize);
    radial.setPosition(kCentreX, kRow, 0);
    field->bindFBOSurface();
    radial.draw();
    EXPECT_PIXEL_NEAR(pixel(kEdge, kRow), 0x9980FFFFu, 1);  // (0.6, 0.5, 1, 1)

    // Frame 0: a red half-plane left of the edge over black.
    LayerTexture first(
        kSize, kSize,
        [](int x, int) {
            return x < kEdge ? Texel{255, 0, 0, 255} : Texel{0, 0, 0, 255};
        },
        GL_LINEAR);  // filtered like the targets that follow
    LayerTexture still(Texel{128, 128, 128, 255});
    LayerTexture clear(Texel{0, 0, 0, 0});
    LayerTexture black(Texel{0, 0, 0, 255});
    KNDrawAdvectColorBrush advect;
    advect.initialize(kSize, kSize, 0);
    advect.setNoiseVectorScalar(0);
    advect.setVelocityRadialTextureID(still.id(), field->getFBOTexture(), clear.id());
    advect.changePatternColorTextureID(black.id());
    advect.setBackgroundTextureID(black.id());

    std::unique_ptr<KNFBO> frames[2] = {target(), target()};
    unsigned int previous = first.id();
    int plateau = 255;
    for (int n = 1; n <= kFrames; ++n) {
        KNFBO& current = *frames[n % 2];
        current.bindFBOSurface();
        advect.setFBOID(previous);
        advect.draw();
        const std::vector<int> red = redRow();

        // Far from the edge the red only drifts towards the black pattern, 0.75 % a frame,
        // each frame rounded to a byte.
        plateau = static_cast<int>(std::lround(plateau * 0.9925));
        EXPECT_NEAR(red[4], plateau, 1) << "frame " << n;
        EXPECT_EQ(red[kSize - 4], 0) << "frame " << n;

        // The edge: the red area over the plateau is where the half-plane ends. Linear
        // filtering blurs the step but moves its area exactly; llvmpipe's rounding of the
        // filtered bytes lags it by about 0.02 pixel a frame.
        double area = 0;
        for (int x = 0; x < kSize; ++x) {
            area += red[x];
        }
        EXPECT_NEAR(area / red[4], kEdge - n * kFlowPerFrame, 0.3) << "frame " << n;
        // Colour leaves pixels behind it, never enters ahead of the step.
        EXPECT_LT(red[static_cast<int>(kEdge - n * kFlowPerFrame) + 2], red[4] / 2) << n;
        EXPECT_GT(red[static_cast<int>(kEdge - n * kFlowPerFrame) - 2], red[4] / 2) << n;

        previous = current.getFBOTexture();
    }
    EXPECT_NEAR(kEdge - kFrames * kFlowPerFrame, 28.1, 0.1);
}

}  // namespace
