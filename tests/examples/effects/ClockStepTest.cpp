#include <cmath>
#include <utility>

#include "examples/effects/common/ClockSteps.h"
#include "examples/preview/Script.h"
#include "tests/examples/effects/SampleEffectTest.h"

namespace qam::test {
namespace {

using samples::ClockSteps;

// Frames as the host runs them: the manager's update before the frame's input, draw() after it.
// One step a frame, a float a hair short of a 60th, two steps (30 Hz), the clock paused, a jump
// (only the latest four run), the clock restarted.
TEST(ClockStepsTest, EveryWhole60thRunsOnceAtItsOwnTimeTheFramesOwnAfterItsInput) {
    struct Tick {
        float now;
        std::vector<long> beforeInput, after;  // the steps, in 60ths of a second
    };
    const Tick kTicks[] = {{1 / 60.0f, {}, {1}},       {2 / 60.0f - 1e-7f, {}, {2}},
                           {4 / 60.0f, {3}, {4}},      {4 / 60.0f, {}, {}},
                           {1.0f, {57, 58, 59}, {60}}, {0.0f, {}, {0}}};
    ClockSteps steps;
    std::vector<long> ran;
    steps.setStep([&ran](float now) { ran.push_back(std::lround(now * 60)); });
    for (const Tick& tick : kTicks) {
        steps.update(tick.now);
        EXPECT_EQ(std::exchange(ran, {}), tick.beforeInput) << "at " << tick.now;
        steps.run(tick.now);
        EXPECT_EQ(std::exchange(ran, {}), tick.after) << "at " << tick.now;
    }
}

// A press, a drag and a lift, an unlock and a pause in it, by the 60th of a second of the clock
// that they come at: even ones, which a 30 Hz run draws too. Pause and resume act on the clock
// at once, not at the next frame: at 41, right after the frame at 40.
const char* const kGesture = R"(2 touch down 40 76
    6 touch move 55 98
    12 touch move 70 121
    18 touch move 85 143
    24 touch move 100 166
    28 touch up 100 166
    32 unlock
    41 pause
    51 resume)";
constexpr int kSixtieths = 100;

// Over a checked background, which shows how far the water carries the picture.
TEST_P(SampleEffectsTest, ThirtyFramesASecondShowWhatSixtyShowAtTheSameClockTime) {
    for (size_t i = 0; i < mBackground.size(); ++i) {
        mBackground[i][1] ^= (i % kScreenWidth / 4 + i / kScreenWidth / 4) % 2 * 64;
    }
    std::vector<std::string> errors;
    const preview::Script gesture = preview::parseScript(kGesture, "gesture", errors);
    ASSERT_TRUE(errors.empty()) << errors[0];
    const auto run = [&](int sixtieths) {  // a frame
        open();
        mFrameSeconds = sixtieths / 60.0;
        std::vector<Frame> drawn;
        for (int at = sixtieths; at <= kSixtieths; at += sixtieths) {
            for (const preview::ScriptEvent& event : gesture.events) {
                if (event.frame > at - sixtieths && event.frame <= at) {
                    mSession->apply(event);
                }
            }
            drawn.push_back(frames(1));
        }
        return drawn;
    };
    const std::vector<Frame> sixty = run(1), thirty = run(2);
    size_t moved = 0;
    for (size_t i = 0; i < thirty.size(); ++i) {
        const std::vector<uint8_t>&expected = sixty[2 * i + 1].rgba, &seen = thirty[i].rgba;
        int off = 0;
        for (size_t c = 0; c < expected.size(); ++c) {
            off += std::abs(expected[c] - seen[c]) > 3;  // rounding apart
        }
        EXPECT_EQ(off, 0) << "channels off at " << 2 * i + 2 << " 60ths of a second";
        moved += i > 0 && seen != thirty[i - 1].rgba;
    }
    EXPECT_GT(4 * moved, 3 * thirty.size()) << "frames that changed: " << moved;
}

}  // namespace
}  // namespace qam::test
