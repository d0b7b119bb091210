#include <GLES2/gl2.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "tests/examples/effects/SampleEffectTest.h"

namespace {

using qam::test::Frame;

// Two places on the 144 x 256 screen, well apart.
constexpr int kAx = 43, kAy = 180;
constexpr int kBx = 100, kBy = 70;
// Pigment differs from the paper by far more than this; rounding by far less.
constexpr int kPaint = 60;
constexpr int kSame = 2;

class WatercolourTest : public qam::test::SampleEffectTest {
  protected:
    WatercolourTest() : SampleEffectTest(WATERCOLOUR_PATH, qam::test::Backdrop::kPaper) {}

    // A short dab at A.
    void dab() {
        touchDown(kAx, kAy);
        frames(3);
        touchUp(kAx, kAy);
        frames(1);
    }
};

TEST_F(WatercolourTest, PaintAppearsUnderTheFingerFollowsItAndBloomsAfterItLifts) {
    EXPECT_EQ(paintedPixels(frames(2), kSame), 0);

    touchDown(kAx, kAy);
    const Frame down = frames(3);
    EXPECT_GT(offBackground(down, kAx, kAy), kPaint);
    EXPECT_LE(offBackground(down, kBx, kBy), kSame);

    // Drag to B, a step a frame.
    constexpr int kSteps = 12;
    for (int i = 1; i <= kSteps; ++i) {
        touchMove(kAx + (kBx - kAx) * i / kSteps, kAy + (kBy - kAy) * i / kSteps);
        step();
    }
    const Frame moved = frames(2);
    EXPECT_GT(offBackground(moved, kBx, kBy), kPaint);
    EXPECT_GT(offBackground(moved, (kAx + kBx) / 2, (kAy + kBy) / 2), kPaint);
    // Where the finger was, the colour stays as a stain.
    EXPECT_GT(offBackground(moved, kAx, kAy), kPaint / 2);

    // Lifted, the flow still carries the paint outward for a moment.
    touchUp(kBx, kBy);
    const int atLift = paintedPixels(frames(1));
    for (int i = 0; i < 30; ++i) {
        step();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_GT(paintedPixels(screen()), atLift + atLift / 20);
    EXPECT_TRUE(quietLog());
}

TEST_F(WatercolourTest, ClearWashesThePaintingBackToTheBackground) {
    dab();
    ASSERT_GT(offBackground(screen(), kAx, kAy), kPaint);

    clear();
    const std::vector<Frame> wash = runOut();
    ASSERT_GE(wash.size(), 3u);
    int previous = 255;
    for (const Frame& frame : wash) {
        const int off = offBackground(frame, kAx, kAy);
        EXPECT_LE(off, previous + kSame);
        previous = off;
    }
    EXPECT_EQ(paintedPixels(wash.back(), kSame), 0);
    // Painting starts afresh afterwards.
    touchDown(kBx, kBy);
    EXPECT_GT(offBackground(frames(3), kBx, kBy), kPaint);
    EXPECT_TRUE(quietLog());
}

TEST_F(WatercolourTest, UnlockFadesTheWholeSurfaceOut) {
    dab();
    unlock();
    const std::vector<Frame> exit = runOut();
    ASSERT_GE(exit.size(), 3u);
    int previous = 255;
    for (const Frame& frame : exit) {
        EXPECT_LE(frame.at(kBx, kBy)[3], previous);
        previous = frame.at(kBx, kBy)[3];
    }
    // Transparent, colours premultiplied: nothing left.
    const Frame& last = exit.back();
    for (int y = 0; y < last.height; y += 8) {
        for (int x = 0; x < last.width; x += 8) {
            ASSERT_EQ(last.at(x, y), (std::array<int, 4>{0, 0, 0, 0})) << x << ", " << y;
        }
    }
    EXPECT_TRUE(quietLog());
}

TEST_F(WatercolourTest, TurnedToLandscapeItPaintsOnTheWholeNewScreen) {
    dab();
    resize(kScreenHeight, kScreenWidth);
    const Frame calm = frames(2);
    ASSERT_EQ(calm.width, kScreenHeight);
    // The paper, cropped to the new shape, covers the screen.
    for (int y = 0; y < calm.height; y += 8) {
        for (int x = 0; x < calm.width; x += 8) {
            ASSERT_GT(calm.at(x, y)[0], 200) << x << ", " << y;
        }
    }
    // Pigment in the corner the portrait screen did not have.
    touchDown(230, 20);
    const Frame painted = frames(3);
    EXPECT_GT(std::abs(painted.at(230, 20)[2] - calm.at(230, 20)[2]) +
                  std::abs(painted.at(230, 20)[0] - calm.at(230, 20)[0]),
              kPaint);
    EXPECT_EQ(painted.at(20, 120), calm.at(20, 120));
    EXPECT_TRUE(quietLog());
}

TEST_F(WatercolourTest, AfterALostContextItStartsAgainFromTheBackground) {
    dab();
    ASSERT_GT(offBackground(screen(), kAx, kAy), kPaint);

    loseContext();
    // The painting lived in the old context's frame-buffer objects.
    EXPECT_EQ(paintedPixels(frames(2), kSame), 0);
    touchDown(kBx, kBy);
    EXPECT_GT(offBackground(frames(3), kBx, kBy), kPaint);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    EXPECT_TRUE(quietLog());
}

}  // namespace
