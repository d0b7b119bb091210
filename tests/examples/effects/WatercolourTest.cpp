#include "tests/examples/effects/SampleEffectTest.h"

namespace {

using qam::test::Frame;

// Two places on the 144 x 256 screen, well apart. Pigment differs from the paper by far more
// than kPaint.
constexpr int kAx = 43, kAy = 180;
constexpr int kBx = 100, kBy = 70;
constexpr int kPaint = 60;

class WatercolourTest : public qam::test::SampleEffectTest {
  protected:
    WatercolourTest() : SampleEffectTest(WATERCOLOUR_PATH, false) {}
};

TEST_F(WatercolourTest, PaintAppearsUnderTheFingerFollowsItAndBloomsAfterItLifts) {
    touch(kAx, kAy, 0);
    const Frame down = frames(3);
    EXPECT_GT(offBackground(down, kAx, kAy), kPaint);
    EXPECT_LE(offBackground(down, kBx, kBy), kSame);

    constexpr int kSteps = 12;  // drag to B, a step a frame
    for (int i = 1; i <= kSteps; ++i) {
        touch(kAx + (kBx - kAx) * i / kSteps, kAy + (kBy - kAy) * i / kSteps, 2);
        frames(1);
    }
    const Frame moved = frames(2);
    EXPECT_GT(offBackground(moved, kBx, kBy), kPaint);
    EXPECT_GT(offBackground(moved, (kAx + kBx) / 2, (kAy + kBy) / 2), kPaint);
    EXPECT_GT(offBackground(moved, kAx, kAy), kPaint / 2);  // the colour stays as a stain

    // Lifted, the flow still carries the paint outward for a moment.
    touch(kBx, kBy, 1);
    const int atLift = paintedPixels(frames(1));
    EXPECT_GT(paintedPixels(frames(30)), atLift + atLift / 20);
}

TEST_F(WatercolourTest, UnlockFadesTheWholeSurfaceOut) {
    touch(kAx, kAy, 0);  // a short dab
    frames(3);
    touch(kAx, kAy, 1);
    mSession->showUnlock();
    const std::vector<Frame> exit = runOut();
    ASSERT_GE(exit.size(), 3u);
    for (size_t i = 1; i < exit.size(); ++i) {
        EXPECT_LE(exit[i].at(kBx, kBy)[3], exit[i - 1].at(kBx, kBy)[3]);
    }
    EXPECT_TRUE(transparent(exit.back()));
}

}  // namespace
