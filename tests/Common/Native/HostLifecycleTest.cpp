#include <EGL/egl.h>

#include <algorithm>

#include "Common/Effect/Timer.h"

#include "tests/Common/Native/HostFixture.h"
#include "tests/support/LogCapture.h"

namespace {

using qam::test::LogCapture;
using vi::Host;
using Calls = std::vector<std::string>;

class HostLifecycleTest : public qam::test::HostTest {};

TEST_F(HostLifecycleTest, LoadEffectReturnsResourceNamesAndInitPicksTheOrientation) {
    std::vector<std::string> names;
    ASSERT_TRUE(Host::loadEffect(mSlot, RECORDING_EFFECT_PATH, names));
    EXPECT_EQ(names, (std::vector<std::string>{"bg", "noise", "mask"}));
    EXPECT_FALSE(effect()->mIsReady);
    Host::init(mSlot, 40, 80, false);
    EXPECT_TRUE(effect()->mIsReady);
    EXPECT_EQ(effect()->mAspectScale, glm::vec2(1.0f, 2.0f));
    Host::init(mSlot, 80, 40, false);
    EXPECT_EQ(effect()->mAspectScale, glm::vec2(2.0f, 1.0f));
    EXPECT_EQ(takeCalls(), (Calls{"create", "initPortrait", "initLandscape"}));
}

TEST_F(HostLifecycleTest, EventsQueuedBeforeAnyEffectReachTheFirstOneOnItsFirstFrame) {
    Host::showUnlock(mSlot);
    const int keys[] = {7};
    const float values[] = {0.5f};
    Host::setParameters(mSlot, keys, values, 1);
    std::vector<std::string> names;
    ASSERT_TRUE(Host::loadEffect(mSlot, RECORDING_EFFECT_PATH, names));
    EXPECT_FALSE(Host::draw(mSlot));  // not initialised: skipped, queue kept
    Host::init(mSlot, kWidth, kHeight, false);
    Host::draw(mSlot);
    // The pending events first, then the parameters init replays.
    EXPECT_EQ(takeCalls(), (Calls{"create", "initLandscape", "onShowUnlock", "setParameter 7 0.5",
                                  "setParameter 7 0.5", "draw"}));
}

TEST_F(HostLifecycleTest, ParametersAreReplayedByEveryInitInKeyOrderUntilDestroy) {
    const int keys[] = {9, 2, 5};
    const float values[] = {0.9f, 0.2f, 0.5f};
    start();
    Host::setParameters(mSlot, keys, values, 3);
    Host::draw(mSlot);
    takeCalls();
    Host::init(mSlot, kWidth, kHeight, false);
    Host::draw(mSlot);
    EXPECT_EQ(takeCalls(), (Calls{"initLandscape", "setParameter 2 0.2", "setParameter 5 0.5",
                                  "setParameter 9 0.9", "draw"}));
    Host::destroy(mSlot);
    start();
    Host::draw(mSlot);
    EXPECT_EQ(takeCalls(), (Calls{"destroy", "create", "initLandscape", "draw"}));
}

TEST_F(HostLifecycleTest, ASecondLoadDeletesTheFirstEffectBeforeCreatingTheNext) {
    start();
    std::vector<std::string> names;
    ASSERT_TRUE(Host::loadEffect(mSlot, RECORDING_EFFECT_PATH, names));
    EXPECT_EQ(takeCalls(), (Calls{"create", "initLandscape", "destroy", "create"}));
    EXPECT_EQ(recordingEffectCount(), 1);
}

TEST_F(HostLifecycleTest, FailedLoadsKeepTheOldEffect) {
    start();
    vi::Effect* old = effect();
    std::vector<std::string> names;
    LogCapture log;
    EXPECT_FALSE(Host::loadEffect(mSlot, "/nonexistent/libeffect.so", names));
    EXPECT_FALSE(Host::loadEffect(mSlot, HOST_LIBRARY_PATH, names));  // no createScene
    EXPECT_EQ(effect(), old);
    const auto messages = log.messages();
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0],
              "dlopen error: /nonexistent/libeffect.so: cannot open shared object file: No such "
              "file or directory");
    EXPECT_EQ(messages[1],
              std::string("dlsym error: ") + HOST_LIBRARY_PATH + ": undefined symbol: createScene");
    Host::draw(mSlot);
    EXPECT_EQ(calls().back(), "draw");  // the old effect still draws
}

TEST_F(HostLifecycleTest, ACreateSceneWithoutAnEffectLeavesNoEffectAndKeepsPendingEvents) {
    start();
    std::vector<std::string> names;
    LogCapture log;
    EXPECT_FALSE(Host::loadEffect(mSlot, NULL_EFFECT_PATH, names));
    EXPECT_EQ(effect(), nullptr);
    EXPECT_EQ(recordingEffectCount(), 0);
    EXPECT_EQ(log.messages(), (Calls{std::string("loadEffect: createScene of ") + NULL_EFFECT_PATH +
                                     " made no effect"}));
    Host::clear(mSlot);  // pending
    start();
    Host::draw(mSlot);
    const Calls all = calls();
    EXPECT_NE(std::find(all.begin(), all.end(), "onClear"), all.end());
}

TEST_F(HostLifecycleTest, DestroyTwiceIsHarmless) {
    start();
    Host::destroy(mSlot);
    EXPECT_EQ(effect(), nullptr);
    Host::destroy(mSlot);
    EXPECT_EQ(takeCalls(), (Calls{"create", "initLandscape", "destroy"}));
}

TEST_F(HostLifecycleTest, ALostContextIsRebuiltByDrawAndReportedByInit) {
    start();
    const int keys[] = {0, 1, 2};
    const float values[] = {1.0f, 0.0f, 1.0f};
    Host::setParameters(mSlot, keys, values, 3);
    Host::draw(mSlot);
    EXPECT_EQ(pixel(5, 5), 0xFF00FFFFu);

    loseContext();
    glClear(GL_COLOR_BUFFER_BIT);
    takeCalls();
    Host::draw(mSlot);
    EXPECT_EQ(pixel(5, 5), 0xFF00FFFFu);
    EXPECT_EQ(takeCalls(), (Calls{"draw"}));  // rebuilt without the hook
    EXPECT_EQ(effect()->mEglContext, eglGetCurrentContext());

    loseContext();
    Host::init(mSlot, kWidth, kHeight, false);
    EXPECT_EQ(takeCalls(), (Calls{"onContextLost", "initLandscape"}));
}

TEST_F(HostLifecycleTest, DrawWantsMoreFramesWhileAnAnimationRuns) {
    start();
    EXPECT_FALSE(Host::draw(mSlot));
    const int keys[] = {100};
    const float seconds[] = {60.0f};
    Host::setParameters(mSlot, keys, seconds, 1);
    EXPECT_TRUE(Host::draw(mSlot));
    EXPECT_TRUE(Host::draw(mSlot));
}

// An effect made without an animation manager still draws.
class BareEffect : public vi::Effect {
  public:
    BareEffect() : Effect(nullptr) { makeCurrent(); }
    void initPortrait() override {}
    void initLandscape() override {}
    bool draw() override { return true; }
};

TEST_F(HostLifecycleTest, AnEffectWithoutAnimationManagerDraws) {
    mSlot.set(new BareEffect());
    Host::init(mSlot, kWidth, kHeight, false);
    EXPECT_TRUE(Host::draw(mSlot));
}

TEST_F(HostLifecycleTest, DrawingBeforeInitIsSkippedWithAWarning) {
    LogCapture log;
    EXPECT_FALSE(Host::draw(mSlot));  // no effect
    std::vector<std::string> names;
    ASSERT_TRUE(Host::loadEffect(mSlot, RECORDING_EFFECT_PATH, names));
    EXPECT_FALSE(Host::draw(mSlot));  // not initialised
    EXPECT_EQ(log.count("WARNING: DRAWING SKIPPED!!!!!!!!!!!!"), 2);
    EXPECT_EQ(takeCalls(), (Calls{"create"}));
}

TEST_F(HostLifecycleTest, BadSizesAreIgnoredWithALogLine) {
    std::vector<std::string> names;
    ASSERT_TRUE(Host::loadEffect(mSlot, RECORDING_EFFECT_PATH, names));
    LogCapture log;
    Host::init(mSlot, 0, 100, false);
    Host::init(mSlot, 100, -1, false);
    EXPECT_FALSE(effect()->mIsReady);
    EXPECT_EQ(log.messages(),
              (Calls{"init: surface size 0x100 ignored", "init: surface size 100x-1 ignored"}));
}

TEST_F(HostLifecycleTest, PauseFreezesTheClockUntilResume) {
    start();
    Host::pauseAnimation();
    Host::draw(mSlot);
    const float frozen = vi::IAnimationManager::mNow;
    Host::pauseAnimation();  // a second pause keeps the first time
    Host::draw(mSlot);
    EXPECT_EQ(vi::IAnimationManager::mNow, frozen);
    Host::resumeAnimation();
    Host::resumeAnimation();  // no pause: nothing
    EXPECT_FALSE(vi::Timer::mIsPaused);
}

}  // namespace
