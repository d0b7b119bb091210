#include "examples/effects/common/Tween.h"

#include <algorithm>

namespace qam::samples {

Tween::Tween(float from, float to, float seconds, Easing easing)
    : mFrom(from), mTo(to), mSeconds(seconds), mEasing(easing), mValue(from) {}

void Tween::start(float now) {
    mStart = now;
    mProgress = 0.0f;
    mValue = mFrom;
    mRunning = true;
}

void Tween::update(float now) {
    if (!mRunning) {
        return;
    }
    // A clock restarted (by clear or an affordance) reads less than the start: begin again there.
    mStart = std::min(mStart, now);
    mProgress = mSeconds > 0.0f ? std::min((now - mStart) / mSeconds, 1.0f) : 1.0f;
    const float eased = mEasing != nullptr ? mEasing(mProgress) : mProgress;
    mValue = mFrom + (mTo - mFrom) * eased;
    if (mProgress >= 1.0f) {
        mValue = mTo;
        mRunning = false;
    }
}

}  // namespace qam::samples
