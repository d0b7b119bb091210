#include "examples/preview/EffectClock.h"

#include <dlfcn.h>
#include <time.h>

#include <atomic>
#include <cmath>
#include <cstdint>

namespace {

using ClockFunction = int (*)(clockid_t, timespec*);

constexpr int64_t kNanosecondsPerSecond = 1000000000;
std::atomic<bool> gFixed{false};
std::atomic<int64_t> gFixedNanoseconds{0};
int64_t gOrigin = 0;

int wallClock(clockid_t clock, timespec* time) {
    static const auto next = reinterpret_cast<ClockFunction>(dlsym(RTLD_NEXT, "clock_gettime"));
    return next(clock, time);
}

}  // namespace

// Every caller in the process that links clock_gettime dynamically lands here first.
extern "C" __attribute__((visibility("default"))) int clock_gettime(clockid_t clock,
                                                                    timespec* time) noexcept {
    if (clock != CLOCK_REALTIME || !gFixed.load(std::memory_order_acquire)) {
        return wallClock(clock, time);
    }
    const int64_t now = gFixedNanoseconds.load(std::memory_order_relaxed);
    time->tv_sec = static_cast<time_t>(now / kNanosecondsPerSecond);
    time->tv_nsec = static_cast<long>(now % kNanosecondsPerSecond);
    return 0;
}

namespace qam::preview {

void fixEffectClock() {
    timespec wall{};
    wallClock(CLOCK_REALTIME, &wall);
    // A whole second: every difference the effect takes is then the same on every run.
    gOrigin = static_cast<int64_t>(wall.tv_sec) * kNanosecondsPerSecond;
    gFixedNanoseconds.store(gOrigin);
    gFixed.store(true, std::memory_order_release);
}

void setEffectClock(double seconds) {
    gFixedNanoseconds.store(gOrigin + std::llround(seconds * kNanosecondsPerSecond));
}

}  // namespace qam::preview
