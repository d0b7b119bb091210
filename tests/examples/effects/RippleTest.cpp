#include <GLES2/gl2.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "tests/examples/effects/SampleEffectTest.h"

namespace {

using qam::test::Frame;

constexpr int kCx = 72, kCy = 128;  // the middle of the 144 x 256 screen
constexpr int kSame = 2;

class RippleTest : public qam::test::SampleEffectTest {
  protected:
    RippleTest() : SampleEffectTest(RIPPLE_PATH, qam::test::Backdrop::kPaper) {}

    // How much brighter than the background a pixel is, over its three colours.
    int gain(const Frame& frame, int x, int y) const {
        const std::array<int, 4> seen = frame.at(x, y);
        const std::array<int, 4> base = background(x, y);
        return seen[0] + seen[1] + seen[2] - base[0] - base[1] - base[2];
    }
    // The distance from the middle, straight up, of the brightest pixel: the wave front.
    int frontRadius(const Frame& frame) const {
        int brightest = 0;
        int radius = -1;
        for (int d = 0; kCy + d < frame.height; ++d) {
            if (gain(frame, kCx, kCy + d) > brightest) {
                brightest = gain(frame, kCx, kCy + d);
                radius = d;
            }
        }
        return brightest > 30 ? radius : -1;
    }
    // A tap in the middle and the frames until the water is calm again.
    std::vector<Frame> tapAndWait() {
        touchDown(kCx, kCy);
        step();
        touchUp(kCx, kCy);
        return runOut(20);
    }
};

TEST_F(RippleTest, ATapSendsOutAWaveThatGrowsFadesAndLeavesCalmWater) {
    EXPECT_EQ(paintedPixels(frames(2), kSame), 0);

    const std::vector<Frame> run = tapAndWait();
    ASSERT_GE(run.size(), 10u);
    int previous = 0;
    int largest = 0;
    int seen = 0;
    for (const Frame& frame : run) {
        const int radius = frontRadius(frame);
        if (radius < 0) {
            continue;  // faded, or off the screen
        }
        EXPECT_GE(radius, previous - 2);
        previous = radius;
        largest = std::max(largest, radius);
        ++seen;
    }
    EXPECT_GE(seen, 5);
    EXPECT_GT(largest, 60);
    // Early on the front is a ring: the middle and the far water are quieter than it.
    const Frame& early = run[3];
    const int front = frontRadius(early);
    ASSERT_GT(front, 4);
    EXPECT_GT(gain(early, kCx, kCy + front), gain(early, kCx, kCy) + 15);
    EXPECT_LE(offBackground(early, 4, 4), kSame);
    // Calm again at the end.
    EXPECT_EQ(paintedPixels(run.back(), kSame), 0);
    EXPECT_TRUE(quietLog());
}

TEST_F(RippleTest, ClearCalmsTheWaterAtOnce) {
    touchDown(kCx, kCy);
    touchUp(kCx, kCy);
    ASSERT_GT(paintedPixels(frames(3)), 0);
    clear();
    EXPECT_EQ(paintedPixels(frames(1), kSame), 0);
    EXPECT_TRUE(quietLog());
}

TEST_F(RippleTest, AfterALostContextTheWavesComeBack) {
    touchDown(kCx, kCy);
    touchUp(kCx, kCy);
    frames(3);
    loseContext();
    touchDown(kCx, kCy);
    touchUp(kCx, kCy);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_GT(frontRadius(frames(1)), 4);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    EXPECT_TRUE(quietLog());
}

}  // namespace
