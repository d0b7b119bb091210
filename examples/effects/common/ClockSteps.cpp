#include "examples/effects/common/ClockSteps.h"

#include <algorithm>
#include <cmath>

namespace qam::samples {

namespace {

// mNow is a float sum of seconds and nanoseconds: a whole 60th may read a hair short of it.
constexpr double kSlack = 0.01;  // of a step

long stepIndex(float now) {
    return static_cast<long>(
        std::floor(static_cast<double>(now) * ClockSteps::kPerSecond + kSlack));
}

float stepTime(long index) {
    return static_cast<float>(index) / ClockSteps::kPerSecond;
}

}  // namespace

float ClockSteps::stepAt(float now) {
    return stepTime(stepIndex(now));
}

void ClockSteps::take(float now, int leave) {
    const long reached = stepIndex(now);
    if (reached < mLast) {
        mLast = reached - 1;  // the clock restarted: a step where it stands now
    }
    const long last = reached - leave;
    for (long i = std::max(mLast + 1, reached - kMostAFrame + 1); i <= last; ++i) {
        mStep(stepTime(i));
    }
    mLast = std::max(mLast, last);
}

}  // namespace qam::samples
