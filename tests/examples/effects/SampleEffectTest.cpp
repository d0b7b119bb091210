#include "tests/examples/effects/SampleEffectTest.h"

namespace {

using qam::test::Sample;
using qam::test::SampleEffectsTest;

// A press is answered when it changes pixels by more than rounding: ripples are faint.
TEST_P(SampleEffectsTest, ClearBringsTheBackgroundBackAndTheNextTouchIsAnsweredAgain) {
    EXPECT_EQ(paintedPixels(frames(2), kSame), 0);
    ASSERT_GT(paintedPixels(press(), 8), 0);
    mSession->clear();
    EXPECT_EQ(paintedPixels(runOut().back(), kSame), 0);
    EXPECT_GT(paintedPixels(press(), 8), 0);
}

// Held and at rest, frame after frame: nothing is logged (the fixture checks).
TEST_P(SampleEffectsTest, SteadyFramesLogNothing) {
    touch(kCx, kCy, 0);
    frames(200);
    touch(kCx, kCy, 1);
    frames(200);
}

TEST_P(SampleEffectsTest, AfterALostContextTheNextTouchIsAnsweredAgain) {
    press();
    touch(kCx, kCy, 1);
    loseContext();
    EXPECT_GT(paintedPixels(press(), 8), 0);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleEffectsTest,
                         ::testing::Values(Sample{"Watercolour", WATERCOLOUR_PATH, false},
                                           Sample{"SparkleRing", SPARKLE_RING_PATH, true},
                                           Sample{"Ripple", RIPPLE_PATH, false}),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
