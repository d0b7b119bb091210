#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "examples/common/Png.h"
#include "examples/preview/Session.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace qam::test {

// One frame read back from the screen, row 0 at the bottom as GL stores it.
struct Frame {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgba;

    std::array<int, 4> at(int x, int y) const;
};

// Background pictures of the test screen's size, every pixel a little different: light paper
// that every pigment stands out from, and a dark dusk that light stands out from.
enum class Backdrop { kPaper, kDusk };

// A sample effect library hosted as the Java side hosts it (through vi::Host), on the shared
// headless context at a small portrait size, with a background picture of the screen's size
// (so that it is drawn texel for pixel). Positions are in GL pixels: (0, 0) bottom left.
class SampleEffectTest : public GLTest {
  protected:
    static constexpr int kScreenWidth = 144;
    static constexpr int kScreenHeight = 256;
    // Frames a test may draw while waiting for an animation of at most a second or two to end.
    static constexpr int kFrameLimit = 400;

    SampleEffectTest(std::string library, Backdrop backdrop)
        : mLibrary(std::move(library)), mBackdrop(backdrop) {}
    void SetUp() override;
    void TearDown() override;

    // One frame; true when the effect wants another.
    bool step();
    // Draws `count` frames, returns the last one.
    Frame frames(int count);
    // Draws until the effect wants no more frames (at most kFrameLimit, a failure), and
    // returns every frame drawn, the last one included. Sleeps `pause` milliseconds between
    // frames, so that the effect's clock moves on.
    std::vector<Frame> runOut(int pause = 10);
    Frame screen() const;
    // A new surface size: the context's and the effect's, through init as on a rotation.
    void resize(int width, int height);

    void touchDown(int x, int y) { touch(x, y, 0); }
    void touchMove(int x, int y) { touch(x, y, 2); }
    void touchUp(int x, int y) { touch(x, y, 1); }
    void unlock() { mSession->showUnlock(); }
    void clear() { mSession->clear(); }

    // The background's colour at a pixel.
    std::array<int, 4> background(int x, int y) const;
    // The largest channel difference between a frame's pixel and the background there.
    int offBackground(const Frame& frame, int x, int y) const;
    // Pixels that differ from the background by more than `threshold` in some channel.
    int paintedPixels(const Frame& frame, int threshold = 24) const;
    // No log lines of the library so far.
    ::testing::AssertionResult quietLog();

    std::unique_ptr<preview::Session> mSession;
    Image mBackground;  // top row first, as handed over

  private:
    void touch(int x, int y, int action);

    std::string mLibrary;
    Backdrop mBackdrop;
    int mWidth = kScreenWidth;
    int mHeight = kScreenHeight;
    std::unique_ptr<LogCapture> mLog;
};

}  // namespace qam::test
