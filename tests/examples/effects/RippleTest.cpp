#include "tests/examples/effects/SampleEffectTest.h"

namespace {

using qam::test::Frame;

class RippleTest : public qam::test::SampleEffectTest {
  protected:
    RippleTest() : SampleEffectTest(RIPPLE_PATH, false) {}
};

TEST_F(RippleTest, ATapSendsOutAWaveThatGrowsFadesAndLeavesCalmWater) {
    touch(kCx, kCy, 0);
    frames(1);
    touch(kCx, kCy, 1);
    const std::vector<Frame> run = runOut();
    ASSERT_GE(run.size(), 10u);
    EXPECT_GT(outwardFront(run, 30, 2), 60);
    // Early on the front is a ring: the middle and the far water are quieter than it.
    const Frame& early = run[3];
    const int front = brightestRadius(early, 30);
    ASSERT_GT(front, 4);
    EXPECT_GT(gain(early, kCx, kCy + front), gain(early, kCx, kCy) + 15);
    EXPECT_LE(offBackground(early, 4, 4), kSame);
    EXPECT_EQ(paintedPixels(run.back(), kSame), 0);  // calm again
}

}  // namespace
