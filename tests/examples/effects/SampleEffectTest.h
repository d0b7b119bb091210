#pragma once

#include <algorithm>
#include <array>
#include <memory>

#include "examples/common/Png.h"
#include "examples/preview/EffectClock.h"
#include "examples/preview/Session.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace qam::test {

// One frame read back from the screen, row 0 at the bottom as GL stores it.
struct Frame {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgba;

    std::array<int, 4> at(int x, int y) const {
        const uint8_t* p = &rgba[(static_cast<size_t>(y) * width + x) * 4];
        return {p[0], p[1], p[2], p[3]};
    }
};

// A sample effect library hosted as the Java side hosts it, on a 144 x 256 portrait screen
// over a background of the screen's size, every pixel a little different: light paper that
// pigment stands out from, or (`dusk`) a dark sky that light stands out from. Positions are GL
// pixels, (0, 0) bottom left. The effect's clock moves mFrameSeconds a frame, however long a
// frame takes to draw here. The library logs nothing meanwhile.
class SampleEffectTest : public GLTest {
  protected:
    static constexpr int kScreenWidth = 144, kScreenHeight = 256;
    static constexpr int kCx = 72, kCy = 128;  // the middle
    static constexpr int kSame = 2;            // rounding differs from the background by less

    SampleEffectTest(std::string library, bool dusk) : mLibrary(std::move(library)) {
        for (int y = 0; y < kScreenHeight; ++y) {
            for (int x = 0; x < kScreenWidth; ++x) {
                mBackground.push_back({(dusk ? 30 : 216) + 24 * x / kScreenWidth,
                                       (dusk ? 36 : 208) + 24 * y / kScreenHeight,
                                       (dusk ? 70 : 192) + 24 * (x + y) / 400, 255});
            }
        }
    }
    void SetUp() override {
        GLTest::SetUp();
        gl().resize(kScreenWidth, kScreenHeight);
        glViewport(0, 0, kScreenWidth, kScreenHeight);
        mLog = std::make_unique<LogCapture>();
        open();
    }
    // The effect afresh, on a clock fixed again.
    void open() {
        mSession.reset();
        preview::fixEffectClock();
        mClockSeconds = 0.0;
        mSession = std::make_unique<preview::Session>();
        std::string error;
        ASSERT_TRUE(mSession->loadEffect(mLibrary, error)) << error;
        ASSERT_EQ(mSession->resourceNames(), std::vector<std::string>{"bg"});
        mSession->init(kScreenWidth, kScreenHeight);
        Image image{kScreenWidth, kScreenHeight, {}};  // top row first, as handed over
        for (int i = kScreenWidth * kScreenHeight - kScreenWidth; i >= 0; i -= kScreenWidth) {
            for (auto pixel = mBackground.begin() + i;
                 pixel != mBackground.begin() + i + kScreenWidth; ++pixel) {
                image.rgba.insert(image.rgba.end(), pixel->begin(), pixel->end());
            }
        }
        mSession->loadTexture("bg", image);
    }
    void TearDown() override {
        mSession.reset();
        const std::vector<std::string> lines = mLog->messages();
        EXPECT_TRUE(lines.empty()) << lines.size() << " log lines, the first: " << lines[0];
    }

    // Draws `count` frames; the last one.
    Frame frames(int count) {
        for (int i = 0; i < count; ++i) {
            draw();
        }
        return {kScreenWidth, kScreenHeight, gl().readPixels(0, 0, kScreenWidth, kScreenHeight)};
    }
    // Every frame until the effect wants no more (at most 400).
    std::vector<Frame> runOut() {
        std::vector<Frame> drawn;
        for (bool more = true; more && drawn.size() < 400; drawn.push_back(frames(0))) {
            more = draw();
        }
        EXPECT_LT(drawn.size(), 400u) << "the effect still wants frames";
        return drawn;
    }
    // Java's actions: 0 down, 1 up, 2 move.
    void touch(int x, int y, int action) { mSession->touch(x, kScreenHeight - y, action); }
    // A finger held in the middle long enough for any effect to answer it fully.
    Frame press() {
        touch(kCx, kCy, 0);
        return frames(31);
    }

    // How much a frame's pixel differs from the background there: the largest channel
    // difference, or the brightness gained over its three colours.
    int offBackground(const Frame& frame, int x, int y, bool gain = false) const {
        const std::array<int, 4> seen = frame.at(x, y), base = mBackground[y * kScreenWidth + x];
        int largest = 0, gained = 0;
        for (int c = 0; c < 4; ++c) {
            largest = std::max(largest, std::abs(seen[c] - base[c]));
            gained += c < 3 ? seen[c] - base[c] : 0;
        }
        return gain ? gained : largest;
    }
    int gain(const Frame& frame, int x, int y) const { return offBackground(frame, x, y, true); }
    // Pixels that differ from the background by more than `threshold` in some channel.
    int paintedPixels(const Frame& frame, int threshold = 24) const {
        int count = 0;
        for (int i = 0; i < frame.width * frame.height; ++i) {
            count += offBackground(frame, i % frame.width, i / frame.width) > threshold;
        }
        return count;
    }
    // How far straight up from the middle the brightest pixel (gaining over `threshold`) is:
    // where a ring or a wave front is; -1 for none.
    int brightestRadius(const Frame& frame, int threshold) const {
        int radius = -1;
        for (int d = 0; kCy + d < frame.height; ++d) {
            if (gain(frame, kCx, kCy + d) > threshold) {
                threshold = gain(frame, kCx, kCy + d);
                radius = d;
            }
        }
        return radius;
    }
    // How far a front moving out over `run` gets; it may step back by `slack` at most.
    int outwardFront(const std::vector<Frame>& run, int threshold, int slack) const {
        int previous = 0, largest = 0;
        for (const Frame& frame : run) {
            const int radius = brightestRadius(frame, threshold);
            if (radius >= 0) {  // not faded nor off the screen
                EXPECT_GE(radius, previous - slack);
                largest = std::max(largest, previous = radius);
            }
        }
        return largest;
    }
    // Every pixel of an 8-pixel grid is transparent (colours premultiplied: black).
    static bool transparent(const Frame& frame) {
        for (int i = 0; i < frame.width * frame.height; i += 8) {
            if (frame.at(i % frame.width, i / frame.width) != std::array<int, 4>{0, 0, 0, 0}) {
                return false;
            }
        }
        return true;
    }

    std::unique_ptr<preview::Session> mSession;
    double mFrameSeconds = 1.0 / 60;
    // Bottom row first, as GL reads back; open() hands it over.
    std::vector<std::array<int, 4>> mBackground;

  private:
    bool draw() {
        preview::setEffectClock(mClockSeconds += mFrameSeconds);
        return mSession->draw();
    }

    std::string mLibrary;
    std::unique_ptr<LogCapture> mLog;
    double mClockSeconds = 0.0;  // since the clock was fixed
};

struct Sample {
    const char* name;
    const char* path;
    bool dusk;

    friend void PrintTo(const Sample& sample, std::ostream* out) { *out << sample.name; }
};

// Each of the three samples, for what they all share.
class SampleEffectsTest : public SampleEffectTest, public ::testing::WithParamInterface<Sample> {
  protected:
    SampleEffectsTest() : SampleEffectTest(GetParam().path, GetParam().dusk) {}
};

}  // namespace qam::test
