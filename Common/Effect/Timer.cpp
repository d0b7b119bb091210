#include "Common/Effect/Timer.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <mutex>

#include "Common/Effect/IAnimation.h"
#include "Common/Effect/IAnimationManager.h"

namespace vi {
namespace {

std::mutex& clockLock() {
    static std::mutex lock;
    return lock;
}

timespec now() {
    timespec time;
    clock_gettime(CLOCK_REALTIME, &time);
    return time;
}

// Each difference is taken as a 32-bit integer and made a float before the sum; the
// nanosecond field may be unnormalised after a resume.
float elapsed(const timespec& current, const timespec& origin) {
    const auto seconds = static_cast<int32_t>(current.tv_sec - origin.tv_sec);
    const auto nanoseconds = static_cast<int32_t>(current.tv_nsec - origin.tv_nsec);
    return static_cast<float>(seconds) + static_cast<float>(nanoseconds * 1e-9);
}

// What a saturating float-to-int conversion gives (ARM's vcvt does this).
int32_t saturatingInt32(float value) {
    if (std::isnan(value)) {
        return 0;
    }
    if (value >= 2147483648.0f) {
        return std::numeric_limits<int32_t>::max();
    }
    if (value < -2147483648.0f) {
        return std::numeric_limits<int32_t>::min();
    }
    return static_cast<int32_t>(value);
}

float readLocked() {
    if (Timer::mIsPaused) {
        return Timer::mPausedTime;
    }
    Timer::mCurrentCnt = now();
    return elapsed(Timer::mCurrentCnt, Timer::mStartingCnt);
}

}  // namespace

timespec Timer::mStartingCnt = {0, 0};
timespec Timer::mCurrentCnt = {0, 0};
bool Timer::mIsPaused = false;
float Timer::mPausedTime = 0.0f;
float IAnimationManager::mNow = 0.0f;

IAnimation::~IAnimation() = default;

float Timer::read() {
    std::lock_guard<std::mutex> guard(clockLock());
    return readLocked();
}

void Timer::restart() {
    std::lock_guard<std::mutex> guard(clockLock());
    mIsPaused = false;
    mStartingCnt = now();
    mCurrentCnt = mStartingCnt;
    IAnimationManager::mNow = readLocked();
}

void Timer::pause() {
    std::lock_guard<std::mutex> guard(clockLock());
    if (mIsPaused) {
        return;
    }
    mCurrentCnt = now();
    mIsPaused = true;
    mPausedTime = elapsed(mCurrentCnt, mStartingCnt);
}

void Timer::resume() {
    std::lock_guard<std::mutex> guard(clockLock());
    if (!mIsPaused) {
        return;
    }
    mIsPaused = false;
    const timespec current = now();
    const float paused = mPausedTime;
    mStartingCnt.tv_sec = current.tv_sec - static_cast<int>(paused);
    // Kept as it always was: the sub-second part is not normalised, and a borrow stores
    // 16 minus the negative value.
    const int64_t nanoseconds =
        static_cast<int64_t>(current.tv_nsec) - saturatingInt32(paused * 1000000000.0f);
    if (nanoseconds < 0) {
        mStartingCnt.tv_sec -= 1;
        mStartingCnt.tv_nsec = static_cast<long>(16 - nanoseconds);
    } else {
        mStartingCnt.tv_nsec = static_cast<long>(nanoseconds);
    }
}

}  // namespace vi
