#include <gtest/gtest.h>

#include "examples/preview/ContactSheet.h"
#include "tests/examples/preview/ToolRun.h"

namespace {

using qam::Image;
using qam::preview::ContactSheet;
using qam::test::pixelAt;

// A frame whose red channel is its number.
Image numbered(int frame, int width, int height) {
    Image image;
    image.width = width;
    image.height = height;
    for (int i = 0; i < width * height; ++i) {
        image.rgba.insert(image.rgba.end(), {static_cast<uint8_t>(frame), 100, 200, 255});
    }
    return image;
}

// The frame number shown by tile `t` of a sheet of 64 x 48 tiles.
int tileNumber(const Image& sheet, int t) {
    const int x = ContactSheet::kGap + (t % 4) * (64 + ContactSheet::kGap) + 10;
    const int y = ContactSheet::kGap + (t / 4) * (48 + ContactSheet::kGap) + 10;
    const uint32_t p = pixelAt(sheet, x, y);
    return (p & 0xFFFF) == 0xC8FF ? static_cast<int>(p >> 24) : -1;
}

TEST(ContactSheetTest, ShortRunsShowEveryFrameInRowsOfFour) {
    ContactSheet sheet(64);
    EXPECT_EQ(sheet.compose().width, 0);
    for (int f = 0; f < 10; ++f) {
        sheet.add(f, numbered(f, 64, 48));
    }
    const Image composed = sheet.compose();
    ASSERT_EQ(composed.width, 4 * 64 + 5 * 4);
    ASSERT_EQ(composed.height, 3 * 48 + 4 * 4);
    for (int t = 0; t < 10; ++t) {
        EXPECT_EQ(tileNumber(composed, t), t);
    }
    EXPECT_EQ(tileNumber(composed, 10), -1);  // the rest of the last row stays background
    EXPECT_EQ(pixelAt(composed, composed.width - 1, composed.height - 1), 0x181818FFu);
    EXPECT_EQ(pixelAt(composed, 0, 0), 0x181818FFu);

    ContactSheet two(64);
    two.add(0, numbered(0, 64, 48));
    two.add(1, numbered(1, 64, 48));
    EXPECT_EQ(two.compose().width, 2 * 64 + 3 * 4);
    EXPECT_EQ(two.compose().height, 48 + 2 * 4);
}

TEST(ContactSheetTest, LongRunsSpreadTwelveTilesFromTheFirstToTheLastFrame) {
    for (int frames : {13, 60, 250}) {
        ContactSheet sheet(64);
        for (int f = 0; f < frames; ++f) {
            sheet.add(f, numbered(f, 64, 48));
        }
        const Image composed = sheet.compose();
        ASSERT_EQ(composed.height, 3 * 48 + 4 * 4) << frames;
        EXPECT_EQ(tileNumber(composed, 0), 0) << frames;
        EXPECT_EQ(tileNumber(composed, 11), frames - 1) << frames;
        for (int t = 1; t < 12; ++t) {
            EXPECT_GT(tileNumber(composed, t), tileNumber(composed, t - 1)) << frames;
        }
    }
}

TEST(ContactSheetTest, WideFramesShrinkByWholeFactorsAveragingEachBox) {
    ContactSheet sheet(320);  // at most 160 wide: factor 2
    Image stripes = numbered(0, 320, 10);
    for (int i = 0; i < 320 * 10; i += 2) {
        stripes.rgba[i * 4 + 1] = 255;  // green 255, 100, 255, 100, ... across each row
    }
    sheet.add(0, stripes);
    const Image composed = sheet.compose();
    ASSERT_EQ(composed.width, 160 + 2 * 4);
    ASSERT_EQ(composed.height, 5 + 2 * 4);
    EXPECT_EQ(pixelAt(composed, 4, 4), 0x00B2C8FFu);  // (2 * 255 + 2 * 100) / 4 = 177.5
}

}  // namespace
