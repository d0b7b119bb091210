#include "Common/Tools/Curves.h"

#include <GLES2/gl2.h>

#include <cmath>
#include <glm/vec2.hpp>
#include <vector>

#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TextureQuad.h"

namespace {

using glm::vec2;
using vi::Curves;
using vi::Texture;

class CurvesTest : public qam::test::GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        mSaved = Texture::mAllTextures;
        Texture::mAllTextures = &mTextures;
    }
    void TearDown() override { Texture::mAllTextures = mSaved; }

    // Byte `channel` (0 red .. 3 alpha) of table entry `level`.
    static int entry(Curves& curves, int level, int channel) {
        const auto* table = static_cast<const unsigned char*>(curves.getTexture()->getBuffer());
        return table[level * 4 + channel];
    }

    // The lookup texture as the GPU samples it, entry by entry: a one-pixel-wide viewport
    // 256 rows high puts each row on one texel centre; four slices cover the 64-row surface.
    std::vector<uint32_t> sampleLut(Curves& curves) {
        std::vector<uint32_t> levels;
        for (int slice = 0; slice < Curves::kLevels / kHeight; ++slice) {
            glViewport(0, -slice * kHeight, 1, Curves::kLevels);
            mQuad.use();
            curves.getTexture()->bind(mQuad.sampler(), 0);
            mQuad.draw();
            for (int y = 0; y < kHeight; ++y) {
                levels.push_back(pixel(0, y));
            }
        }
        glViewport(0, 0, kWidth, kHeight);
        return levels;
    }

    std::vector<Texture*> mTextures;
    std::vector<Texture*>* mSaved = nullptr;
    qam::test::TextureQuad mQuad;
};

// With the segment's end points as outer control points, (0, 0)..(255, 255) is
// y = 0.5 (255t + 765t^2 - 510t^3): exact at both ends, symmetric, but not the identity.
TEST_F(CurvesTest, TwoPointRampFollowsTheSegmentFormula) {
    const vec2 ramp[] = {{0, 0}, {255, 255}};
    Curves curves(ramp, 2, nullptr, 0, nullptr, 0);
    EXPECT_EQ(entry(curves, 0, Curves::RED), 0);
    EXPECT_EQ(entry(curves, 1, Curves::RED), 0);
    EXPECT_EQ(entry(curves, 32, Curves::RED), 21);
    EXPECT_EQ(entry(curves, 64, Curves::RED), 52);
    EXPECT_EQ(entry(curves, 128, Curves::RED), 128);
    EXPECT_EQ(entry(curves, 255, Curves::RED), 255);
    for (int level = 0; level < Curves::kLevels; ++level) {
        const int mirrored = entry(curves, level, 0) + entry(curves, 255 - level, 0);
        EXPECT_TRUE(mirrored == 254 || mirrored == 255) << "level " << level;
        if (level > 0) {
            EXPECT_GE(entry(curves, level, 0), entry(curves, level - 1, 0));
        }
        // Channels without a curve and every alpha byte keep the zeroed table.
        EXPECT_EQ(entry(curves, level, Curves::GREEN), 0);
        EXPECT_EQ(entry(curves, level, Curves::BLUE), 0);
        EXPECT_EQ(entry(curves, level, 3), 0);
    }
}

TEST_F(CurvesTest, SegmentsWriteOnlyBetweenTheirPointsAndTheLaterOneWins) {
    // Green: a one-entry segment at 50 (t = 0 x infinity) is not a number and gives 255.
    const vec2 green[] = {{10, 40}, {50, 100}, {50, 100}};
    // Blue: the same one-entry segment followed by another, which overwrites it.
    const vec2 blue[] = {{10, 40}, {50, 100}, {50, 100}, {90, 20}};
    Curves curves(nullptr, 0, green, 3, blue, 4);
    EXPECT_EQ(entry(curves, 9, Curves::GREEN), 0);
    EXPECT_EQ(entry(curves, 10, Curves::GREEN), 40);
    EXPECT_EQ(entry(curves, 50, Curves::GREEN), 255);
    EXPECT_EQ(entry(curves, 51, Curves::GREEN), 0);
    EXPECT_EQ(entry(curves, 50, Curves::BLUE), 100);
    EXPECT_EQ(entry(curves, 90, Curves::BLUE), 20);
    EXPECT_EQ(entry(curves, 91, Curves::BLUE), 0);
    EXPECT_EQ(entry(curves, 50, Curves::RED), 0);
}

TEST_F(CurvesTest, OutputsClampToTheByteRange) {
    // Red climbs past 255, green starts below 0.
    const vec2 high[] = {{0, 200}, {20, 400}};
    const vec2 low[] = {{0, -100}, {20, 100}};
    Curves curves(high, 2, low, 2, nullptr, 0);
    EXPECT_EQ(entry(curves, 0, Curves::RED), 200);
    EXPECT_EQ(entry(curves, 20, Curves::RED), 255);
    EXPECT_EQ(entry(curves, 0, Curves::GREEN), 0);
    EXPECT_EQ(entry(curves, 20, Curves::GREEN), 100);
}

TEST_F(CurvesTest, LookupTextureSamplesBackEveryEntryAndFollowsLaterEdits) {
    const vec2 red[] = {{0, 0}, {255, 255}};
    const vec2 green[] = {{0, 255}, {128, 30}, {255, 200}};
    const vec2 blue[] = {{64, 10}, {192, 250}};
    Curves curves(red, 2, green, 3, blue, 2);
    Texture* lut = curves.getTexture();
    EXPECT_EQ(mTextures, std::vector<Texture*>{lut});
    EXPECT_EQ(lut->mWidth, 1u);
    EXPECT_EQ(lut->mHeight, 256u);
    EXPECT_FALSE(lut->mIsStatic);
    EXPECT_TRUE(lut->mIsRepeat);
    EXPECT_TRUE(lut->mIsLinear);
    EXPECT_EQ(lut->mFormat, GLenum(GL_RGBA));
    lut->allocate();

    std::vector<uint32_t> sampled = sampleLut(curves);
    for (int level = 0; level < Curves::kLevels; ++level) {
        const uint32_t expected = uint32_t(entry(curves, level, 0)) << 24 |
                                  uint32_t(entry(curves, level, 1)) << 16 |
                                  uint32_t(entry(curves, level, 2)) << 8;
        EXPECT_PIXEL_NEAR(sampled[level], expected, 0) << "level " << level;
    }

    // A flat blue curve written into the live table shows on the next bind.
    curves.calculateCatmullRomPoint(0, Curves::kLevels, {0, 77}, {0, 77}, {255, 77}, {255, 77},
                                    Curves::BLUE);
    sampled = sampleLut(curves);
    EXPECT_EQ(qam::test::channel(sampled[0], 8), 77);
    EXPECT_EQ(qam::test::channel(sampled[200], 8), 77);
    EXPECT_EQ(qam::test::channel(sampled[200], 16), entry(curves, 200, 1));
}

TEST_F(CurvesTest, RecomputingReplacesTheTexture) {
    const vec2 ramp[] = {{0, 0}, {255, 255}};
    Curves curves(ramp, 2, nullptr, 0, nullptr, 0);
    const vec2 flat[] = {{0, 9}, {255, 9}};
    curves.calculateCatmullRomPoints(nullptr, 0, flat, 2, nullptr, 0);
    EXPECT_EQ(mTextures, std::vector<Texture*>{curves.getTexture()});
    EXPECT_EQ(entry(curves, 64, Curves::RED), 52);
    EXPECT_EQ(entry(curves, 64, Curves::GREEN), 9);
}

TEST_F(CurvesTest, BadCurvesAreDroppedWithOneLineEach) {
    qam::test::LogCapture log;
    const vec2 ramp[] = {{0, 0}, {255, 255}};
    const vec2 single[] = {{10, 10}};
    const vec2 outside[] = {{-5, 10}, {20, 20}, {40, 40}, {300, 50}};
    const vec2 nan[] = {{NAN, 10}, {20, 20}};
    Curves curves(outside, 4, nullptr, 3, nan, 2);
    EXPECT_EQ(entry(curves, 20, Curves::RED), 20);  // the one valid segment is drawn
    EXPECT_EQ(entry(curves, 40, Curves::RED), 40);
    EXPECT_EQ(entry(curves, 41, Curves::RED), 0);
    EXPECT_EQ(entry(curves, 20, Curves::BLUE), 0);
    curves.calculateCatmullRomPoints(single, 1, ramp, -1, nullptr, 0);  // too few: silent
    curves.calculateCatmullRomPoint(200, 257, {}, {}, {}, {}, Curves::RED);
    curves.calculateCatmullRomPoint(-1, 10, {}, {}, {}, {}, Curves::GREEN);
    curves.calculateCatmullRomPoint(0, 10, {}, {}, {}, {}, Curves::CHANNELS(3));
    const std::vector<std::string> lines = log.messages();
    ASSERT_EQ(lines.size(), 7u);
    EXPECT_EQ(lines[0], "Curves: segment -5..20 of channel 0 is outside 0..255, skipped");
    EXPECT_EQ(lines[1], "Curves: segment 40..300 of channel 0 is outside 0..255, skipped");
    EXPECT_EQ(lines[2], "Curves: no points for 3 control points of channel 1, channel kept");
    EXPECT_EQ(lines[3], "Curves: segment nan..20 of channel 2 is outside 0..255, skipped");
    EXPECT_EQ(lines[4], "Curves: entries 200..257 of channel 0 are outside the table, skipped");
    EXPECT_EQ(lines[5], "Curves: entries -1..10 of channel 1 are outside the table, skipped");
    EXPECT_EQ(lines[6], "Curves: entries 0..10 of channel 3 are outside the table, skipped");
    for (int level = 0; level < Curves::kLevels; ++level) {
        EXPECT_EQ(entry(curves, level, 3), 0);
    }
}

}  // namespace
