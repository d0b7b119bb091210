#include "Kinetra/Layers/KNDrawBrilliantAdvect.h"

#include <array>

#include "Kinetra/Core/KNMesh.h"
#include "tests/Kinetra/Layers/LayerTestSupport.h"

namespace {

using namespace qam::test;

using Kinetra::KNDrawBrilliantAdvect;
using Kinetra::KNMesh;

// The streak's weights as bytes: 0, 0.5, 0.5, 0.4, 0.4, 0.3, 0.2, 0.1 of full intensity.
const std::vector<int> kWeightBytes = {0, 128, 128, 102, 102, 77, 51, 26};

// One step for the 8-bit write of a lowp result (llvmpipe computes it in single precision).
constexpr int kTolerance = 1;

// A float RGBA texture of one texel value, sampled nearest: 0.5 survives exactly.
class FloatTexture {
  public:
    explicit FloatTexture(std::array<float, 4> value) {
        std::vector<float> data;
        for (int i = 0; i < 16; ++i) {
            data.insert(data.end(), value.begin(), value.end());
        }
        glGenTextures(1, &mId);
        glBindTexture(GL_TEXTURE_2D, mId);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 4, 4, 0, GL_RGBA, GL_FLOAT, data.data());
    }
    ~FloatTexture() { glDeleteTextures(1, &mId); }
    FloatTexture(const FloatTexture&) = delete;
    FloatTexture& operator=(const FloatTexture&) = delete;
    GLuint id() const { return mId; }

  private:
    GLuint mId = 0;
};

class KNDrawBrilliantAdvectTest : public GLTest {
  protected:
    // 125 texels make one tap (0.02 · 0.4 = 0.008 of the texture) exactly one texel.
    static constexpr int kTaps = 125;

    // A velocity texture pointing along +u (red 1, green 0.5) that is lit (blue 1) in column
    // `lit` only, or pointing along -u when `backwards`; alpha 1.
    static std::vector<uint8_t> litColumn(int lit, bool backwards) {
        return texels(kTaps, 3, [&](int x, int) {
            return Texel{static_cast<uint8_t>(backwards ? 0 : 255), 128,
                         static_cast<uint8_t>(x == lit ? 255 : 0), 255};
        });
    }
    // The layer over the whole kTaps x 3 target, writing its output unblended.
    static void streakOver(KNDrawBrilliantAdvect& layer, GLuint texture) {
        layer.initialize(kTaps, 3);
        layer.setBlendOption(GL_ONE, GL_ZERO);
        layer.setRadialTextureID(texture);
        layer.draw();
    }
    static std::vector<int> row(int y, int from, int count) {
        std::vector<int> reds;
        for (int x = from; x < from + count; ++x) {
            reds.push_back(channel(pixel(x, y), 24));
        }
        return reds;
    }
    static void expectBytes(const std::vector<int>& actual, const std::vector<int>& expected) {
        ASSERT_EQ(actual.size(), expected.size());
        for (size_t i = 0; i < actual.size(); ++i) {
            EXPECT_NEAR(actual[i], expected[i], kTolerance) << "entry " << i;
        }
    }
};

TEST_F(KNDrawBrilliantAdvectTest, CoversTheSurfaceWithExactlyFourEntriesPerArray) {
    KNDrawBrilliantAdvect layer;
    layer.initialize(300, 200);
    KNMesh& mesh = *layer.getMesh();
    expectPoints(mesh.vertex, {{0, 0}, {300, 0}, {0, 200}, {300, 200}});
    expectPoints(mesh.uv, {{0, 1}, {1, 1}, {0, 0}, {1, 0}});  // base: v = 1 at the bottom
    EXPECT_EQ(mesh.index, (std::vector<unsigned short>{0, 1, 2, 3}));

    // Whatever a caller appended is cut off by the next rebuild.
    mesh.vertex.push_back({1, 2, 3});
    mesh.uv.resize(9);
    mesh.index.push_back(7);
    layer.resizeSurface(400, 100);
    expectPoints(mesh.vertex, {{0, 0}, {400, 0}, {0, 100}, {400, 100}});
    expectPoints(mesh.uv, {{0, 1}, {1, 1}, {0, 0}, {1, 0}});
    EXPECT_EQ(mesh.index, (std::vector<unsigned short>{0, 1, 2, 3}));
}

TEST_F(KNDrawBrilliantAdvectTest, SmearsALitColumnIntoTheEightTapStreak) {
    auto target = boundTarget(kTaps, 3);
    KNDrawBrilliantAdvect layer;
    LayerTexture forwards(kTaps, 3, litColumn(40, false));
    streakOver(layer, forwards.id());
    // Velocity (1, 0): pixel 40 + i reads the lit texel at tap i, so the row repeats the
    // weights, centre tap (weight 0) first; nothing beyond seven taps.
    expectBytes(row(1, 39, 10), {0, 0, 128, 128, 102, 102, 77, 51, 26, 0});
    // Every channel carries the intensity.
    EXPECT_PIXEL_NEAR(pixel(41, 1), 0x80808080u, kTolerance);

    // Pointing along -u the streak runs the other way.
    LayerTexture backwards(kTaps, 3, litColumn(80, true));
    layer.setRadialTextureID(backwards.id());
    target->clearFBOSurface();
    layer.draw();
    expectBytes(row(1, 72, 10), {0, 26, 51, 77, 102, 102, 128, 128, 0, 0});
}

TEST_F(KNDrawBrilliantAdvectTest, AVerticalStreakFollowsTheFlippedCoordinates) {
    // Velocity (0, 1) in a 3 x 125 texture lit in texel row 40: texel row 40 + i gets weight
    // i. The base coordinates put row 124 at the bottom, so that is screen row 84 - i.
    auto target = boundTarget(3, kTaps);
    LayerTexture up(3, kTaps, [](int, int y) {
        return Texel{128, 255, static_cast<uint8_t>(y == 40 ? 255 : 0), 255};
    });
    KNDrawBrilliantAdvect layer;
    layer.initialize(3, kTaps);
    layer.setBlendOption(GL_ONE, GL_ZERO);
    layer.setRadialTextureID(up.id());
    layer.draw();
    std::vector<int> column;
    for (int y = 85; y >= 76; --y) {
        column.push_back(channel(pixel(1, y), 24));
    }
    expectBytes(column, {0, 0, 128, 128, 102, 102, 77, 51, 26, 0});
}

TEST_F(KNDrawBrilliantAdvectTest, DividesByAlphaAndSumsTheWeights) {
    auto target = boundTarget(16, 16);
    KNDrawBrilliantAdvect layer;
    // Blue 0.2 over alpha 0.502 is 0.398, times the weights' sum 2.4: 0.956.
    LayerTexture divided(Texel{255, 128, 51, 128});
    layer.initialize(16, 16);
    layer.setBlendOption(GL_ONE, GL_ZERO);
    layer.setRadialTextureID(divided.id());
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(8, 8), 0xF4F4F4F4u, kTolerance);

    // The layer leaves blending as the caller set it: here initialize's source-alpha blend
    // over transparent black, 0.6 · 0.6 from blue 0.251 · 2.4 = 0.6.
    LayerTexture quarter(Texel{255, 128, 64, 255});
    KNDrawBrilliantAdvect blended;
    blended.initialize(16, 16);
    blended.setRadialTextureID(quarter.id());
    target->clearFBOSurface();
    blended.draw();
    EXPECT_PIXEL_NEAR(pixel(8, 8), 0x5C5C5C5Cu, kTolerance);
}

TEST_F(KNDrawBrilliantAdvectTest, DiscardsExactlyNoDirection) {
    auto target = boundTarget(16, 16, {0, 0, 255, 255});
    KNDrawBrilliantAdvect layer;
    FloatTexture still({0.5f, 0.5f, 0.25f, 1.0f});
    layer.initialize(16, 16);
    layer.setBlendOption(GL_ONE, GL_ZERO);
    layer.setRadialTextureID(still.id());
    layer.draw();
    EXPECT_EQ(pixel(8, 8), 0x0000FFFFu);
    EXPECT_EQ(pixel(0, 15), 0x0000FFFFu);

    // A hair off (0.5, 0.5) is a direction: drawn, 0.25 · 2.4 = 0.6.
    FloatTexture almost({0.5f, 0.5f + 1.0f / 1024, 0.25f, 1.0f});
    layer.setRadialTextureID(almost.id());
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(8, 8), 0x99999999u, kTolerance);
}

TEST_F(KNDrawBrilliantAdvectTest, BadInputIsLoggedAndDroppedUnsetTexturesAreBoundAsTheyAre) {
    KNDrawBrilliantAdvect layer;
    expectOneLogLineEach({[&] { layer.initialize(64, 0); }});
    EXPECT_TRUE(layer.getMesh()->vertex.empty());
    layer.initialize(64, 64);
    expectOneLogLineEach({[&] { layer.resizeSurface(0, 0); }});
    EXPECT_FLOAT_EQ(layer.getMesh()->vertex[3].x, 64);

    // Unset and zero textures are bound as they are and read black with alpha 1: a direction
    // with nothing to smear.
    glClearColor(0, 0, 1, 1);
    for (unsigned int id : {kUnset, 0u}) {
        glClear(GL_COLOR_BUFFER_BIT);
        layer.setBlendOption(GL_ONE, GL_ZERO);
        layer.setRadialTextureID(id);
        layer.draw();
        EXPECT_EQ(pixel(32, 32), 0u);
    }
}

}  // namespace
