#include "Common/Tools/Curves.h"

#include <cmath>
#include <vector>

#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TextureQuad.h"

namespace {

using glm::vec2;
using vi::Curves;
using Points = std::vector<vec2>;

class CurvesTest : public qam::test::GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        vi::Texture::mAllTextures = &mTextures;
    }
    void TearDown() override { vi::Texture::mAllTextures = mSaved; }
    // Byte `channel` (0 red .. 3 alpha) of table entry `level`.
    static int entry(Curves& curves, int level, int channel) {
        return static_cast<const unsigned char*>(
            curves.getTexture()->getBuffer())[level * 4 + channel];
    }

    std::vector<vi::Texture*> mTextures;
    std::vector<vi::Texture*>* mSaved = vi::Texture::mAllTextures;
};

// Each segment between two points uses them as its outer control points too, so
// y = y1 + (y2 - y1) (t / 2 + 3 t^2 / 2 - t^3) over t = 0..1: (0, 0)..(255, 255) is exact at
// both ends and symmetric, but not the identity. Bytes are truncated and clamped.
TEST_F(CurvesTest, SegmentsFollowTheCatmullRomFormula) {
    const struct {
        Points points;
        std::vector<std::pair<int, int>> entries;  // level, byte
    } cases[] = {
        {{{0, 0}, {255, 255}}, {{0, 0}, {1, 0}, {32, 21}, {64, 52}, {128, 128}, {255, 255}}},
        // Written only between the points; a later segment overwrites a shared end.
        {{{10, 40}, {50, 100}, {50, 100}, {90, 20}},
         {{9, 0}, {10, 40}, {50, 100}, {70, 60}, {90, 20}, {91, 0}}},
        // A one-entry segment divides by zero: not a number, so 255.
        {{{10, 40}, {50, 100}, {50, 100}}, {{50, 255}, {51, 0}}},
        {{{0, -100}, {20, 400}}, {{0, 0}, {10, 150}, {20, 255}}},  // clamped below and above
    };
    for (const auto& c : cases) {
        Curves curves(nullptr, 0, c.points.data(), static_cast<int>(c.points.size()), nullptr, 0);
        for (auto [level, byte] : c.entries) {
            EXPECT_EQ(entry(curves, level, Curves::GREEN), byte)
                << "level " << level << " of a curve from " << c.points[0].x;
            EXPECT_EQ(entry(curves, level, Curves::RED) + entry(curves, level, Curves::BLUE) +
                          entry(curves, level, 3),
                      0);  // other channels and alpha keep the zeroed table
        }
    }
}

// The table is a 1 x 256 RGBA texture uploaded again on every bind, so later edits show. A
// one-pixel-wide viewport 256 rows high puts each of its lowest 64 rows on one texel centre.
TEST_F(CurvesTest, LookupTextureSamplesBackAndFollowsLaterEdits) {
    const Points red = {{0, 0}, {255, 255}}, green = {{0, 255}, {128, 30}, {255, 200}};
    Curves curves(red.data(), 2, green.data(), 3, nullptr, 0);
    EXPECT_EQ(mTextures, std::vector<vi::Texture*>{curves.getTexture()});
    curves.getTexture()->allocate();
    // A flat blue curve written into the live table.
    curves.calculateCatmullRomPoint(0, Curves::kLevels, {0, 77}, {0, 77}, {255, 77}, {255, 77},
                                    Curves::BLUE);
    qam::test::TextureQuad quad;
    glViewport(0, 0, 1, Curves::kLevels);
    quad.use();
    curves.getTexture()->bind(quad.sampler(), 0);
    quad.draw();
    for (int level = 0; level < kHeight; ++level) {
        ASSERT_EQ(pixel(0, level), uint32_t(entry(curves, level, 0)) << 24 |
                                       uint32_t(entry(curves, level, 1)) << 16 | 77u << 8)
            << "level " << level;
    }
    // Recomputing replaces the texture; a curve of fewer than two points keeps its channel.
    curves.calculateCatmullRomPoints(nullptr, 0, red.data(), 2, red.data(), 1);
    EXPECT_EQ(mTextures, std::vector<vi::Texture*>{curves.getTexture()});
    EXPECT_EQ(entry(curves, 64, Curves::RED), 52);
    EXPECT_EQ(entry(curves, 64, Curves::GREEN), 52);
    EXPECT_EQ(entry(curves, 64, Curves::BLUE), 77);
}

TEST_F(CurvesTest, SegmentsOutsideTheTableAreDroppedWithOneLineEach) {
    qam::test::LogCapture log;
    const Points outside = {{-5, 10}, {20, 20}, {40, 40}, {300, 50}}, nan = {{NAN, 10}, {20, 20}};
    Curves curves(outside.data(), 4, nullptr, 3, nan.data(), 2);
    EXPECT_EQ(entry(curves, 40, Curves::RED), 40);  // the one valid segment is drawn
    EXPECT_EQ(entry(curves, 41, Curves::RED) + entry(curves, 20, Curves::BLUE), 0);
    curves.calculateCatmullRomPoint(200, 257, {}, {}, {}, {}, Curves::RED);
    curves.calculateCatmullRomPoint(-1, 10, {}, {}, {}, {}, Curves::GREEN);
    curves.calculateCatmullRomPoint(0, 10, {}, {}, {}, {}, Curves::CHANNELS(3));
    EXPECT_EQ(log.messages().size(), 7u);
}

}  // namespace
