#include "examples/preview/GoldenFrames.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>

#include "tests/examples/preview/ToolRun.h"

namespace {

using qam::Image;
using qam::preview::GoldenFrames;
using Mode = GoldenFrames::Mode;
namespace fs = std::filesystem;

// A grey 100 x 10 frame (a thousand pixels, of which the default share lets one differ) with
// pixels `first` to `last` moved by `off` in `channel`.
Image grey(int first = 0, int last = -1, int channel = 0, int off = 0) {
    Image image{100, 10, std::vector<uint8_t>(4000, 0x90)};
    for (int pixel = first; pixel <= last; ++pixel) {
        image.rgba[4 * pixel + channel] += off;
    }
    return image;
}

long filesIn(const std::string& folder) {
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

TEST(GoldenFramesTest, AFrameFailsWhenTooManyPixelsAreTooFarOffItsSizeDiffersOrItIsNotDrawn) {
    const std::string out = qam::test::freshFolder(), golden = out + "/golden";
    const std::pair<Image, std::string> cases[] = {
        {grey(0, 999, 1, 2), ""},  // every pixel, within the channel tolerance
        {grey(7, 7, 0, 3), ""},    // one pixel off, within the share
        {grey(8, 9, 3, -100),
         "frame 2: 2 of 1000 pixels (0.20 %, over the 0.1 % allowed) differ by "
         "more than 2 (up to 100) from " +
             golden + "/frame-0002.png; see " + out + "/diff-0002.png"},
        {Image{10, 100, std::vector<uint8_t>(4000, 0x90)},
         "frame 3: drawn 10x100, but " + golden + "/frame-0003.png is 100x10"}};
    std::string error;
    GoldenFrames record(Mode::Record, golden, out, {}, {});
    ASSERT_TRUE(record.open(error)) << error;
    for (int frame = 0; frame <= 4; ++frame) {
        ASSERT_TRUE(record.add(frame, grey(), error)) << error;
    }
    GoldenFrames compare(Mode::Compare, golden, out, {}, {});
    ASSERT_TRUE(compare.open(error)) << error;
    for (int frame = 0; frame < 4; ++frame) {  // the run ends before the last golden frame
        ASSERT_TRUE(compare.add(frame, cases[frame].first, error)) << error;
    }
    EXPECT_EQ(compare.failures(),
              (std::vector<std::string>{cases[2].second, cases[3].second,
                                        "frame 4: not drawn: the run ended after frame 3"}));
    EXPECT_EQ(filesIn(out), 2);  // golden/ and diff-0002.png
}

TEST(GoldenFramesTest, KeepsTheChosenFramesAndPaintsDifferencesOverTheDimmedFrame) {
    const std::string out = qam::test::freshFolder(), golden = out + "/golden";
    fs::create_directories(golden);
    qam::test::writeFile(golden + "/frame-0009.png", "from an earlier recording");
    qam::test::writeFile(out + "/diff-0007.png", "from an earlier comparison");
    std::string error;
    GoldenFrames record(Mode::Record, golden, out, {1, 2}, {});
    ASSERT_TRUE(record.open(error) && record.add(0, grey(), error) &&
                record.add(1, grey(), error) && record.add(2, grey(), error))
        << error;
    EXPECT_EQ(filesIn(golden), 2);  // not frame 0, nor the stale frame 9
    EXPECT_FALSE(fs::exists(golden + "/frame-0000.png"));
    GoldenFrames compare(Mode::Compare, golden, out, {}, {3, 0.0});
    Image drawn = grey(0, 0, 0, 4);  // a small difference at pixel 0, a large one at pixel 5
    drawn.rgba[4 * 5 + 1] = 0;
    ASSERT_TRUE(compare.open(error) && compare.add(1, grey(), error) &&
                compare.add(2, drawn, error))
        << error;
    EXPECT_EQ(filesIn(out), 2);  // golden/ and diff-0002.png
    Image diff;
    ASSERT_TRUE(qam::readPng(out + "/diff-0002.png", diff));
    // Both differences in loud magenta, the larger brighter; the rest grey at a third.
    EXPECT_TRUE(qam::test::pixelIs(diff, 0, 0, 0xa000a0ff, 32));
    EXPECT_TRUE(qam::test::pixelIs(diff, 5, 0, 0xe000e0ff, 31));
    EXPECT_TRUE(qam::test::pixelIs(diff, 50, 5, 0x303030ff));
    EXPECT_FALSE(GoldenFrames(Mode::Compare, golden, out, {1, 3}, {}).open(error));
    EXPECT_EQ(error, golden + "/frame-0003.png: no such golden frame");
    EXPECT_FALSE(GoldenFrames(Mode::Compare, out, out, {}, {}).open(error));
}

}  // namespace
