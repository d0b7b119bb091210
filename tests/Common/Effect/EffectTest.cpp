#include "Common/Effect/Effect.h"

#include <cstdint>
#include <glm/glm.hpp>
#include <glm/gtc/epsilon.hpp>
#include <vector>

#include "Common/Effect/AnimationManager.h"
#include "Common/Effect/EventHolder.h"
#include "Common/Effect/Timer.h"
#include "tests/support/GLTest.h"

namespace {

using EffectTest = qam::test::GLTest;
using vi::Timer;

TEST_F(EffectTest, InitSetsAnOrthoProjectionOverTheScreenAndTheErrorTexture) {
    vi::EventHolder effect;
    effect.makeCurrent();
    *vi::Drawable::mViewMatrix = glm::mat4(2.0f);  // the projection resets the view
    effect.initEffect(720, 1280);
    const glm::mat4& projection = *vi::Drawable::mProjectionMatrix;
    EXPECT_EQ(glm::vec2(projection * glm::vec4(0, 0, 0, 1)), glm::vec2(-1, -1));
    EXPECT_TRUE(glm::all(glm::epsilonEqual(glm::vec2(projection * glm::vec4(720, 1280, 0, 1)),
                                           glm::vec2(1, 1), 1e-6f)));
    EXPECT_EQ(projection[2][2], -0.001f);
    EXPECT_EQ(*vi::Drawable::mViewMatrix, glm::mat4(1.0f));
    EXPECT_EQ(effect.mInvScreenSize, glm::vec2(1.0f / 720, 1.0f / 1280));
    EXPECT_EQ(effect.mTextureList.back(), effect.mErrorTexture);

    effect.setPerspectiveProjection();  // a fixed field of view
    EXPECT_FLOAT_EQ(projection[0][0], 1.0f / 0.55785173f * 1280 / 720);
    EXPECT_EQ((std::vector{projection[1][1], projection[2][3], projection[3][2], projection[3][3]}),
              (std::vector{1.792591f, -1.0f, -2.0002f, 0.0f}));
}

int64_t nowNanoseconds() {
    timespec time;
    clock_gettime(CLOCK_REALTIME, &time);
    return time.tv_sec * 1000000000LL + time.tv_nsec;
}

class TimerTest : public ::testing::Test {
  protected:
    void SetUp() override { Timer::restart(); }
    void TearDown() override { Timer::restart(); }
};

TEST_F(TimerTest, PauseTwiceKeepsTheFirstTimeAndResumeMovesTheOriginBackByThePause) {
    Timer::mStartingCnt.tv_sec -= 5;  // five seconds in
    Timer::resume();                  // not paused: nothing
    Timer::pause();
    const float paused = Timer::mPausedTime;
    EXPECT_NEAR(paused, 5.0f, 0.01f);
    Timer::mStartingCnt.tv_sec -= 5;
    Timer::pause();
    EXPECT_EQ(Timer::mPausedTime, paused);

    // Resume puts the origin `paused` seconds before now, the nanoseconds as (int)(paused * 1e9)
    // saturated at 2^31 - 1; a borrow stores 16 minus the negative difference. Read back, the
    // origin gives the time of the resume.
    const struct {
        float paused;
        int64_t nanoseconds;
        bool borrows;
    } cases[] = {
        {0.0f, 0, false},
        {1.0f, 1000000000, true},  // exceeds any nanosecond field
        {2.5f, 2147483647, true},  // saturated
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.paused);
        Timer::mIsPaused = true;
        Timer::mPausedTime = c.paused;
        const int64_t before = nowNanoseconds();
        Timer::resume();
        const int64_t after = nowNanoseconds();
        const timespec origin = Timer::mStartingCnt;
        const int64_t seconds = origin.tv_sec + static_cast<int>(c.paused) + (c.borrows ? 1 : 0);
        const int64_t nanoseconds =
            c.borrows ? c.nanoseconds + 16 - origin.tv_nsec : origin.tv_nsec + c.nanoseconds;
        EXPECT_GE(seconds * 1000000000LL + nanoseconds, before);
        EXPECT_LE(seconds * 1000000000LL + nanoseconds, after);
    }
}

struct CountingAnimation : vi::IAnimation {
    void start(float) override {}
    void update(float now) override { seen.push_back(now); }
    bool isRunning() override { return running; }
    void stop() override { running = false; }
    std::vector<float> seen;
    bool running = false;
};

TEST_F(TimerTest, ManagerUpdatesEveryAnimationAndAnswersWhetherOneRuns) {
    vi::AnimationManager<TimerTest> manager;
    CountingAnimation first, second;
    manager.addAnimation(&first);
    manager.addAnimation(&second);
    Timer::pause();
    manager.update();
    EXPECT_EQ(second.seen, std::vector<float>{Timer::mPausedTime});
    EXPECT_FALSE(manager.isAnimating());
    first.running = second.running = true;
    manager.removeAnimation(&first);
    manager.update();
    EXPECT_EQ(first.seen.size(), 1u);
    EXPECT_TRUE(manager.isAnimating());
    manager.stopAll();
    EXPECT_FALSE(second.running);
}

}  // namespace
