// The quads and coordinates the layers build, and the advect brushes' ping-pong.

#include <numeric>
#include <type_traits>

#include "Kinetra/Core/KNMesh.h"
#include "tests/Kinetra/Layers/LayerTestSupport.h"

namespace {

using namespace qam::test;
using namespace Kinetra;
using Points = std::vector<std::pair<float, float>>;

void expectPoints(const std::vector<KNVector3D<float>>& actual, const Points& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (size_t i = 0; i < actual.size(); ++i) {
        EXPECT_FLOAT_EQ(actual[i].x, expected[i].first) << "entry " << i;
        EXPECT_FLOAT_EQ(actual[i].y, expected[i].second) << "entry " << i;
        EXPECT_EQ(actual[i].z, 0.0f) << "entry " << i;
    }
}
// The corners in strip order: (x0, y0), (x1, y0), (x0, y1), (x1, y1).
const auto rect = [](float x0, float y0, float x1, float y1) {
    return Points{{x0, y0}, {x1, y0}, {x0, y1}, {x1, y1}};
};
const Points kUV = rect(0, 1, 1, 0);
// The colour brushes hold their mesh by pointer, the water brushes by value.
const KNMesh& meshOf(KNMesh* mesh) {
    return *mesh;
}
const KNMesh& meshOf(KNMesh& mesh) {
    return mesh;
}

// A previous frame, then `frames` frames, each in a target of its own reading the one before
// through setFBOID; `check(n)` runs with frame n bound.
template <typename Layer>
void pingPong(Layer& layer, Inputs& in, GLuint previous, int frames,
              const std::function<void(int)>& check) {
    for (int n = 1; n <= frames; ++n) {
        const GLuint drawn = in.target(in.w, in.h).getFBOTexture();
        layer.setFBOID(std::exchange(previous, drawn));
        layer.draw();
        check(n);
    }
}

// The quad builders of the colour and water brushes share one recipe, quirks included.
template <typename Brush>
class BrushQuadTest : public LayerTest {};
using Brushes =
    ::testing::Types<KNDrawAdvectColorBrush, KNDrawBGAdvectColorBrush, KNDrawMixColorBrush,
                     KNDrawBGAdvectWaterBrush, KNDrawMixWaterBrush>;
TYPED_TEST_SUITE(BrushQuadTest, Brushes);

TYPED_TEST(BrushQuadTest, FourthCornerTakesItsHeightFromX0AndIndicesGrowByFour) {
    TypeParam brush;
    brush.initialize(300, 200, 0);
    constexpr bool water = !std::is_pointer_v<decltype(brush.getMesh())>;
    const KNMesh& mesh = meshOf(brush.getMesh());
    expectPoints(mesh.uv, kUV);
    // Alignment waits for the next rebuild, then centres the quad on the position.
    brush.setRectAlign(1);
    expectPoints(mesh.vertex, rect(0, 0, 300, 200));
    brush.setPosition(0, 0, 0);
    expectPoints(mesh.vertex, {{-150, -100}, {150, -100}, {-150, 100}, {150, 50}});
    // Any other mode puts the bottom-left corner at the position; setSize builds with the size
    // as given, setPosition with the stored whole pixels.
    brush.setRectAlign(2);
    for (int i = 0; i < 2; ++i) {
        brush.setPosition(10, 30, 5);
        expectPoints(mesh.vertex, {{10, 30}, {310, 30}, {10, 230}, {310, 210}});
        brush.setSize(300.7f, 200.2f);
        EXPECT_FLOAT_EQ(mesh.vertex[3].x, 310.7f);
    }
    ASSERT_EQ(mesh.index.size(), 24u);
    for (size_t i = 0; i < mesh.index.size(); ++i) {
        EXPECT_EQ(mesh.index[i], i % 4);
    }
    // A second initialize: the colour brushes append the coordinates again (only the first
    // four are drawn), the water brushes start afresh.
    brush.initialize(64, 64, 0);
    EXPECT_EQ(mesh.uv.size(), water ? 4u : 8u);
    EXPECT_EQ(mesh.index.size(), water ? 4u : 28u);
}

// The radial brushes build the true rectangle instead, and refill their indices.
template <typename Brush>
class RadialQuadTest : public LayerTest {};
using RadialBrushes =
    ::testing::Types<KNDrawRadialColorBrush, KNDrawRadialColorBrushColor, KNDrawRadialWaterBrush>;
TYPED_TEST_SUITE(RadialQuadTest, RadialBrushes);

TYPED_TEST(RadialQuadTest, BuildsTheTrueRectangleAndRefillsItsIndices) {
    TypeParam brush;
    brush.initialize(300, 200);
    const KNMesh& mesh = *brush.getMesh();
    brush.setRectAlign(1);
    brush.setSize(300, 200);
    brush.setSize(300, 200);
    expectPoints(mesh.vertex, rect(-150, -100, 150, 100));
    expectPoints(mesh.uv, kUV);
    EXPECT_EQ(mesh.index, (std::vector<unsigned short>{0, 1, 2, 3}));
    // setPosition rebuilds at the stored whole-pixel size.
    brush.setSize(300.7f, 200.2f);
    EXPECT_FLOAT_EQ(mesh.vertex[3].x, 150.35f);
    brush.setPosition(10, 20, 0);
    expectPoints(mesh.vertex, rect(-140, -80, 160, 120));
    // A new surface is the new size of the quad, about the same position; the mask is lost.
    namedTexture("mask", {255, 255, 255, 255});
    brush.setMaskTexture("mask");
    brush.resizeSurface(400.5f, 100);
    expectPoints(mesh.vertex, rect(-190.25f, -30, 210.25f, 70));
    EXPECT_EQ(brush.getMaskTextureID(), kUnset);
}

using GeometryTest = LayerTest;

TEST_F(GeometryTest, BrilliantRadialCentresItsQuadWithScreenAndPatternCoordinates) {
    KNDrawBrilliantRadial layer;
    layer.initialize(720, 1280);
    const KNMesh& mesh = *layer.getMesh();
    expectPoints(mesh.vertex, rect(-360, -640, 360, 640));
    expectPoints(layer.getPatternTextureUV(), rect(-.5f, 1.5f, .5f, .5f));
    // setSize only stores the whole pixels; the next setPosition uses them.
    layer.setSize(300.7f, 200.2f);
    layer.setPosition(150, 100, 0);
    expectPoints(mesh.vertex, rect(0, 0, 300, 200));
    expectPoints(mesh.normal, rect(0, 1, 300.f / 720, 1 - 200.f / 1280));
    // A rebuild undoes a flip.
    layer.flipTextureV();
    expectPoints(mesh.uv, kUV);
    layer.setPosition(150, 100, 0);
    expectPoints(mesh.uv, rect(0, 0, 1, 1));
    // A resize keeps the orientation chosen at initialisation.
    layer.resizeSurface(1280, 720);
    expectPoints(layer.getPatternTextureUV(),
                 rect(-490.f / 1280, 1 + 260.f / 720, 790.f / 1280, 1 - 460.f / 720));
}

TEST_F(GeometryTest, BrilliantRingZoomsAndCropsTheBackgroundCoordinates) {
    KNDrawBrilliantRing ring;
    ring.initialize(300, 200);
    ring.createTabScaledTextureUV(1.25f, {0.1f, -0.2f});
    expectPoints(ring.getTabScaledTextureUV(), rect(-.15f, 1.05f, 1.35f, -.45f));
    // setSize rebuilds at the size as given; setPosition at the whole pixels, ignoring the
    // position; a resize brings the zoom back to 0.95.
    ring.setSize(300.7f, 200.2f);
    EXPECT_FLOAT_EQ(ring.getMesh()->vertex[3].x, 300.7f);
    ring.setPosition(50, 60, 0);
    expectPoints(ring.getMesh()->vertex, rect(0, 0, 300, 200));
    ring.resizeSurface(400, 100);
    EXPECT_FLOAT_EQ(ring.getTabScaledTextureUV()[0].x, 0.05f);

    // A square "bg" on a 300 x 200 surface: a margin of 1/6 top and bottom, at whole pixels.
    KNTextureManager::getInstancePtr()->setTextureId("bg", 77, 1000, 1000);
    KNDrawBrilliantRing cropped;
    cropped.initialize(300, 200);
    const float a = 1.0f / 6, z = 5.0f / 6;
    expectPoints(cropped.getBackgroundTextureUV(), rect(0, z, 1, a));
    cropped.setSize(300.9f, 200.9f);
    EXPECT_FLOAT_EQ(cropped.getBackgroundTextureUV()[0].y, z);
    cropped.resizeSurface(200, 300);
    expectPoints(cropped.getBackgroundTextureUV(), rect(a, 1, z, 0));
}

using AdvectPingPongTest = LayerTest;

// A radial field of red 0.6 (a radial colour brush's, away from its core) makes the advect
// brush fetch (0.6 - 0.5) · 10 · 9.2625 · 0.0021 of the surface upstream, so a red half-plane
// left of x = 48 flows left by that much each frame.
TEST_F(AdvectPingPongTest, ColourBrushFlowsAlongItsFieldFrameAfterFrame) {
    constexpr int kSize = 128, kRow = 64, kEdge = 48;
    constexpr double kFlow = 0.1 * 10 * 9.2625 * 0.0021 * kSize;  // 2.49 pixels
    Inputs in(kSize, kSize);
    const TexelAt halfPlane = [](int x, int) { return Texel{byte(x < kEdge), 0, 0, 255}; };
    const GLuint first = in(kSize, kSize, halfPlane, GL_LINEAR);  // filtered like the targets
    KNDrawAdvectColorBrush advect;
    advect.initialize(kSize, kSize, 0);
    advect.setNoiseVectorScalar(0);
    advect.setVelocityRadialTextureID(in(Texel{128, 128, 128, 255}), in(Texel{153, 128, 255, 255}),
                                      in(Texel{0, 0, 0, 0}));
    advect.changePatternColorTextureID(in(Texel{0, 0, 0, 255}));
    int plateau = 255;
    pingPong(advect, in, first, 8, [&](int n) {
        SCOPED_TRACE(n);
        const std::vector<uint8_t> rgba = gl().readPixels(0, kRow, kSize, 1);
        const auto red = [&](int x) { return static_cast<double>(rgba[x * 4]); };
        // Far from the edge the red only drifts towards the black pattern, 0.75 % a frame,
        // rounded to a byte each frame.
        plateau = near(plateau * 0.9925);
        EXPECT_NEAR(red(4), plateau, 1);
        EXPECT_EQ(red(kSize - 4), 0);
        // The red area (green, blue 0, alpha 1) over the plateau is where the half-plane ends:
        // filtering blurs the step but keeps its area (llvmpipe lags by 0.02 pixel a frame).
        const double area = std::accumulate(rgba.begin(), rgba.end(), 0.0) - 255 * kSize;
        EXPECT_NEAR(area / red(4), kEdge - n * kFlow, 0.3);
    });
}

// Red falls and blue rises by 3 % of the gap a frame, each frame rounded to a byte: ten
// frames tell 3 % from 3.5 % (red 188 against 179).
TEST_F(AdvectPingPongTest, WaterBrushDriftsThreePercentAFrameTowardsTheBackground) {
    Inputs in;
    const GLuint still = in(Texel{128, 128, 255, 255});
    KNDrawBGAdvectWaterBrush brush;
    brush.initialize(kWidth, kHeight, 0);
    brush.changeBGTextureID(in(Texel{0, 0, 255, 255}));
    brush.setVelocityRadialTextureID(still, still);
    int r = 255, b = 0;
    pingPong(brush, in, in(Texel{255, 0, 0, 255}), 10, [&](int n) {
        SCOPED_TRACE(n);
        r = near(r * 0.97), b = near(b * 0.97 + 0.03 * 255);
        expectProbes({{30, 30, {r, -1, b, 255}, 1}});
    });
}

}  // namespace
