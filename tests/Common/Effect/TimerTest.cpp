#include "Common/Effect/Timer.h"

#include <gtest/gtest.h>

#include "Common/Effect/AnimationManager.h"
#include "Common/Effect/IAnimationManager.h"

namespace {

using vi::Timer;

timespec now() {
    timespec time;
    clock_gettime(CLOCK_REALTIME, &time);
    return time;
}

class TimerTest : public ::testing::Test {
  protected:
    void SetUp() override { Timer::restart(); }
    void TearDown() override { Timer::restart(); }
};

TEST_F(TimerTest, RestartStartsAtZero) {
    EXPECT_FALSE(Timer::mIsPaused);
    EXPECT_GE(vi::IAnimationManager::mNow, 0.0f);
    EXPECT_LT(vi::IAnimationManager::mNow, 0.01f);
}

TEST_F(TimerTest, PauseTwiceKeepsTheFirstTimeAndResumeWithoutPauseDoesNothing) {
    Timer::mStartingCnt.tv_sec -= 5;  // five seconds in
    Timer::resume();
    EXPECT_FALSE(Timer::mIsPaused);
    Timer::pause();
    const float paused = Timer::mPausedTime;
    EXPECT_NEAR(paused, 5.0f, 0.01f);
    Timer::mStartingCnt.tv_sec -= 5;
    Timer::pause();
    EXPECT_EQ(Timer::mPausedTime, paused);
    EXPECT_EQ(Timer::read(), paused);
    EXPECT_EQ(Timer::read(), paused);
}

TEST_F(TimerTest, ResumeAfterAPauseOfTwoAndAHalfSecondsKeepsItsArithmetic) {
    Timer::mIsPaused = true;
    Timer::mPausedTime = 2.5f;
    const timespec before = now();
    Timer::resume();
    const timespec after = now();
    // (int)(2.5e9) saturates, so the nanosecond difference is negative: the borrow fires and
    // the field holds 16 minus it.
    const int64_t resumeNanoseconds =
        2147483647LL + 16 - static_cast<int64_t>(Timer::mStartingCnt.tv_nsec);
    EXPECT_GE(resumeNanoseconds, 0);
    EXPECT_LT(resumeNanoseconds, 1000000000);
    const int64_t resumeSeconds = Timer::mStartingCnt.tv_sec + 3;
    const int64_t resumed = resumeSeconds * 1000000000LL + resumeNanoseconds;
    EXPECT_GE(resumed, before.tv_sec * 1000000000LL + before.tv_nsec);
    EXPECT_LE(resumed, after.tv_sec * 1000000000LL + after.tv_nsec);
}

TEST_F(TimerTest, ResumeAfterOneSecondBorrowsAWholeSecond) {
    Timer::mIsPaused = true;
    Timer::mPausedTime = 1.0f;
    const timespec before = now();
    Timer::resume();
    const timespec after = now();
    // 1e9 ns exceed any nanosecond field: seconds go back 1 + 1, the field is 16 - (n - 1e9).
    const int64_t resumeNanoseconds = 1000000016LL - Timer::mStartingCnt.tv_nsec;
    const int64_t resumed = (Timer::mStartingCnt.tv_sec + 2) * 1000000000LL + resumeNanoseconds;
    EXPECT_GE(resumed, before.tv_sec * 1000000000LL + before.tv_nsec);
    EXPECT_LE(resumed, after.tv_sec * 1000000000LL + after.tv_nsec);
}

struct CountingAnimation : vi::IAnimation {
    void start(float) override {}
    float getDuration() const override { return 0.0f; }
    void update(float now) override { seen.push_back(now); }
    bool isRunning() override { return running; }
    void stop() override { ++stops; }
    std::vector<float> seen;
    bool running = false;
    int stops = 0;
};

TEST_F(TimerTest, ManagerUpdatesEveryAnimationAndAnswersWhetherOneRuns) {
    vi::AnimationManager<TimerTest> manager;
    EXPECT_FALSE(manager.isAnimating());
    CountingAnimation first, second;
    manager.addAnimation(&first);
    manager.addAnimation(&second);
    Timer::pause();
    manager.update();
    EXPECT_EQ(first.seen, std::vector<float>{Timer::mPausedTime});
    EXPECT_EQ(second.seen, std::vector<float>{Timer::mPausedTime});
    EXPECT_FALSE(manager.isAnimating());
    second.running = true;
    EXPECT_TRUE(manager.isAnimating());
    manager.stopAll();
    EXPECT_EQ(first.stops + second.stops, 2);
    manager.removeAnimation(&first);
    manager.update();
    EXPECT_EQ(first.seen.size(), 1u);
    EXPECT_EQ(second.seen.size(), 2u);
}

}  // namespace
