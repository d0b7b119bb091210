#pragma once

#include "Common/Effect/IAnimation.h"

namespace qam::samples {

// A value that runs from one end to the other over a fixed time of the effect clock
// (vi::IAnimationManager::mNow), shaped by an easing curve such as the Kinetra interpolators.
class Tween : public vi::IAnimation {
  public:
    using Easing = float (*)(float);

    // A linear run when `easing` is null.
    Tween(float from, float to, float seconds, Easing easing = nullptr);

    void start(float now) override;
    void update(float now) override;
    bool isRunning() override { return mRunning; }
    // Stops where it is.
    void stop() override { mRunning = false; }

    // `from` until started; `to` once run to the end.
    float value() const { return mValue; }
    // 0 to 1 of the time.
    float progress() const { return mProgress; }

  private:
    float mFrom;
    float mTo;
    float mSeconds;
    Easing mEasing;
    float mStart = 0.0f;
    float mProgress = 0.0f;
    float mValue;
    bool mRunning = false;
};

}  // namespace qam::samples
