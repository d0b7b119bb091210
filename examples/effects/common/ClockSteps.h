#pragma once

#include <functional>

#include "Common/Effect/IAnimation.h"

namespace qam::samples {

// Runs a simulation in fixed steps of a 60th of a second of the effect clock
// (vi::IAnimationManager::mNow) rather than once a frame, so that it keeps its pace at any frame
// rate: each frame runs a step for every 60th the clock has passed since the last one, each at
// its own time. Added to the effect's animation manager, it runs the steps due before the
// frame's own as the frame begins, before the host delivers the frame's input; draw() runs the
// frame's own after it. Input then lands between the same steps at 30 as at 60 frames a second.
class ClockSteps : public vi::IAnimation {
  public:
    static constexpr int kPerSecond = 60;
    // After a jump of the clock (the process stood still) the rest are dropped rather than all
    // run in one frame.
    static constexpr int kMostAFrame = 4;

    // `step` runs one step at the clock time it is given.
    void setStep(std::function<void(float)> step) { mStep = std::move(step); }
    // From draw(): the steps due at clock time `now`; none while the clock stands still.
    void run(float now) { take(now, 0); }
    // The time of the step that clock time `now` falls in: the first that input of a frame at
    // `now` reaches, the frame's own.
    static float stepAt(float now);

    void start(float) override {}
    // From the animation manager: the steps due before `now`'s own.
    void update(float now) override { take(now, 1); }
    bool isRunning() override { return false; }
    void stop() override {}

  private:
    void take(float now, int leave);

    std::function<void(float)> mStep;
    long mLast = 0;  // the last step run, in 60ths of a second since the clock's origin
};

}  // namespace qam::samples
