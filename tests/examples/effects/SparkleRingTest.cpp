#include "tests/examples/effects/SampleEffectTest.h"

namespace {

using qam::test::Frame;

constexpr int kTouchRadius = 23;  // the ring under the finger: 0.16 screen widths

class SparkleRingTest : public qam::test::SampleEffectTest {
  protected:
    SparkleRingTest() : SampleEffectTest(SPARKLE_RING_PATH, true) {}
};

TEST_F(SparkleRingTest, AHeldFingerLightsARingAroundItAndNothingElse) {
    const Frame lit = press();
    EXPECT_NEAR(brightestRadius(lit, 60), kTouchRadius, 5);
    EXPECT_GT(gain(lit, kCx + kTouchRadius, kCy), 40);  // every way round
    EXPECT_GT(gain(lit, kCx - kTouchRadius, kCy), 40);
    EXPECT_GT(gain(lit, kCx, kCy - kTouchRadius), 40);
    EXPECT_LE(offBackground(lit, kCx, kCy), kSame);  // a ring, not a disc
    EXPECT_LE(offBackground(lit, kCx, kCy + 3 * kTouchRadius), kSame);
    EXPECT_LE(offBackground(lit, 4, 4), kSame);
}

TEST_F(SparkleRingTest, UnlockThrowsTheRingOutAndFadesTheScreenOut) {
    press();
    touch(kCx, kCy, 1);
    mSession->showUnlock();
    const std::vector<Frame> run = runOut();
    ASSERT_GE(run.size(), 5u);
    EXPECT_GT(outwardFront(run, 60, 3), 3 * kTouchRadius);  // from under the finger, outward
    EXPECT_TRUE(transparent(run.back()));
}

}  // namespace
