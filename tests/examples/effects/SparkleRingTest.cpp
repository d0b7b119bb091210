#include <GLES2/gl2.h>

#include <chrono>
#include <thread>

#include "tests/examples/effects/SampleEffectTest.h"

namespace {

using qam::test::Frame;

// The finger in the middle of the 144 x 256 screen; the ring under it has a radius of 0.16
// screen widths.
constexpr int kCx = 72, kCy = 128;
constexpr int kTouchRadius = 23;
constexpr int kSame = 2;

class SparkleRingTest : public qam::test::SampleEffectTest {
  protected:
    SparkleRingTest() : SampleEffectTest(SPARKLE_RING_PATH, qam::test::Backdrop::kDusk) {}

    // How much brighter than the background a pixel is, over its three colours.
    int gain(const Frame& frame, int x, int y) const {
        const std::array<int, 4> seen = frame.at(x, y);
        const std::array<int, 4> base = background(x, y);
        return seen[0] + seen[1] + seen[2] - base[0] - base[1] - base[2];
    }
    // The distance from the finger, straight up, of the brightest pixel: where the ring is.
    int ringRadius(const Frame& frame) const {
        int brightest = 0;
        int radius = -1;
        for (int d = 0; kCy + d < frame.height; ++d) {
            if (gain(frame, kCx, kCy + d) > brightest) {
                brightest = gain(frame, kCx, kCy + d);
                radius = d;
            }
        }
        return brightest > 60 ? radius : -1;
    }
    // A touch held long enough for the ring to glow fully.
    Frame held() {
        touchDown(kCx, kCy);
        step();
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        return frames(2);
    }
};

TEST_F(SparkleRingTest, AHeldFingerLightsARingAroundItAndNothingElse) {
    EXPECT_EQ(paintedPixels(frames(2), kSame), 0);

    const Frame lit = held();
    EXPECT_NEAR(ringRadius(lit), kTouchRadius, 5);
    // Every way round, not only upward.
    EXPECT_GT(gain(lit, kCx + kTouchRadius, kCy), 40);
    EXPECT_GT(gain(lit, kCx - kTouchRadius, kCy), 40);
    EXPECT_GT(gain(lit, kCx, kCy - kTouchRadius), 40);
    // A ring, not a disc; and nothing far from it.
    EXPECT_LE(offBackground(lit, kCx, kCy), kSame);
    EXPECT_LE(offBackground(lit, kCx, kCy + 3 * kTouchRadius), kSame);
    EXPECT_LE(offBackground(lit, 4, 4), kSame);
    EXPECT_TRUE(quietLog());
}

TEST_F(SparkleRingTest, UnlockThrowsTheRingOutAndFadesTheScreenOut) {
    held();
    touchUp(kCx, kCy);
    unlock();
    const std::vector<Frame> run = runOut(20);
    ASSERT_GE(run.size(), 5u);

    // The ring grows from under the finger until it leaves the screen.
    int previous = 0;
    int largest = 0;
    for (const Frame& frame : run) {
        const int radius = ringRadius(frame);
        if (radius < 0) {
            continue;  // off the screen, or faded
        }
        EXPECT_GE(radius, previous - 3);
        previous = radius;
        largest = std::max(largest, radius);
    }
    EXPECT_GT(largest, 3 * kTouchRadius);
    // At the end the surface is transparent.
    const Frame& last = run.back();
    for (int y = 0; y < last.height; y += 8) {
        for (int x = 0; x < last.width; x += 8) {
            ASSERT_EQ(last.at(x, y)[3], 0) << x << ", " << y;
        }
    }
    EXPECT_TRUE(quietLog());
}

TEST_F(SparkleRingTest, ClearPutsTheRingOut) {
    held();
    clear();
    const std::vector<Frame> run = runOut();
    EXPECT_EQ(paintedPixels(run.back(), kSame), 0);
    EXPECT_TRUE(quietLog());
}

TEST_F(SparkleRingTest, AfterALostContextTheRingComesBack) {
    held();
    loseContext();
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    const Frame again = frames(2);
    EXPECT_NEAR(ringRadius(again), kTouchRadius, 5);
    EXPECT_LE(offBackground(again, kCx, kCy), kSame);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    EXPECT_TRUE(quietLog());
}

}  // namespace
