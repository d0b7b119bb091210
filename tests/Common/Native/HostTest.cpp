#include <EGL/egl.h>
#include <dlfcn.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "Common/Effect/Effect.h"
#include "Common/Effect/IAnimationManager.h"
#include "Common/Effect/Timer.h"
#include "Common/Native/Host.h"
#include "Common/Renderer/Base/ModelObject.h"
#include "Common/Renderer/Base/Renderer.h"
#include "Common/Renderer/Base/ShaderProgram.h"
#include "Common/Renderer/Base/Texture.h"
#include "tests/effects/RecordingEffect.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace {

using namespace qam::test;
using vi::Host;

using Calls = std::vector<std::string>;

// Hosts the recording effect on the fixture's context through the same calls Java makes.
class HostTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        Host::destroy(mSlot);  // also empties the stored parameters
        recordingEffectReset();
    }
    void TearDown() override { Host::destroy(mSlot); }

    bool load(const char* path = RECORDING_EFFECT_PATH) {
        Calls names;
        return Host::loadEffect(mSlot, path, names);
    }
    void start() {
        ASSERT_TRUE(load());
        Host::init(mSlot, kWidth, kHeight, false);
    }
    // The recording effect's hook calls since the last reset, one per element; resets.
    static Calls takeCalls() {
        std::istringstream all(recordingEffectCalls());
        Calls lines;
        for (std::string line; std::getline(all, line);) {
            lines.push_back(line);
        }
        recordingEffectReset();
        return lines;
    }

    vi::Effect* effect() { return mSlot.get(); }

    vi::HostInstance mSlot;
};

using HostLifecycleTest = HostTest;

TEST_F(HostLifecycleTest, InitPicksTheOrientationAndReportsALostContext) {
    ASSERT_TRUE(load());
    Host::init(mSlot, 40, 80, false);
    EXPECT_EQ(effect()->mAspectScale, glm::vec2(1.0f, 2.0f));
    Host::init(mSlot, 80, 40, false);
    EXPECT_EQ(effect()->mAspectScale, glm::vec2(2.0f, 1.0f));
    loseContext();  // init reports it
    Host::init(mSlot, 80, 40, false);
    EXPECT_EQ(effect()->mEglContext, eglGetCurrentContext());
    EXPECT_EQ(takeCalls(),
              (Calls{"create", "initPortrait", "initLandscape", "onContextLost", "initLandscape"}));
}

TEST_F(HostLifecycleTest, ASecondLoadReplacesTheEffectAndEventsWaitOutAnEmptyCreateScene) {
    start();
    ASSERT_TRUE(load());
    EXPECT_EQ(takeCalls(), (Calls{"create", "initLandscape", "destroy", "create"}));
    EXPECT_FALSE(load(NULL_EFFECT_PATH));  // leaves no effect: the clear goes to the next one
    Host::clear(mSlot);
    start();
    Host::draw(mSlot);
    EXPECT_EQ(takeCalls(), (Calls{"destroy", "create", "initLandscape", "onTouchUp 0 0",
                                  "onSecondTouchUp 0 0", "onThirdTouchUp 0 0", "onClear", "draw"}));
}

// An effect made without an animation manager still draws.
class BareEffect : public vi::Effect {
  public:
    BareEffect() : Effect(nullptr) { makeCurrent(); }
    void initPortrait() override {}
    void initLandscape() override {}
    bool draw() override { return true; }
};

TEST_F(HostLifecycleTest, DrawWantsMoreFramesWhileAnAnimationRuns) {
    start();
    EXPECT_FALSE(Host::draw(mSlot));
    const int key = 100;
    const float minute = 60.0f;
    Host::setParameters(mSlot, &key, &minute, 1);
    EXPECT_TRUE(Host::draw(mSlot));
    Host::destroy(mSlot);
    mSlot.set(new BareEffect());
    Host::init(mSlot, kWidth, kHeight, false);
    EXPECT_TRUE(Host::draw(mSlot));
}

// Built as effect libraries from elsewhere are: the manager reaches its own animation class by
// vtable slot, and its renderer subclasses' fields sit right after the library's data.
TEST_F(HostLifecycleTest, AnEffectOnTheBinaryContractIsCalledBySlotAndKeepsItsAddedFields) {
    ASSERT_TRUE(load(LAYOUT_EFFECT_PATH));
    const auto report = reinterpret_cast<const char* (*)()>(
        dlsym(dlopen(LAYOUT_EFFECT_PATH, RTLD_NOW | RTLD_NOLOAD), "layoutEffectReport"));
    ASSERT_NE(report, nullptr);
    Host::init(mSlot, kWidth, kHeight, false);
    EXPECT_TRUE(Host::draw(mSlot));
    EXPECT_TRUE(Host::draw(mSlot));
    EXPECT_FALSE(Host::draw(mSlot));  // its three frames are up
    loseContext();
    Host::init(mSlot, kWidth, kHeight, false);
    EXPECT_FALSE(Host::draw(mSlot));
    EXPECT_EQ(pixel(8, 32), 0xFF0000FFu);
    EXPECT_EQ(pixel(56, 32), 0x00FF00FFu);
    Host::destroy(mSlot);
    EXPECT_STREQ(report(), "updates 4 stops 1 tags kept");
}

// An initialised recording effect that has drawn its first frame.
class RunningHostTest : public HostTest {
  protected:
    void SetUp() override {
        HostTest::SetUp();
        start();
        Host::draw(mSlot);
        takeCalls();
    }
    // Forgets every texture loaded for the fixture's context, so tests start clean.
    void TearDown() override {
        for (const auto& entry : *effect()->mTextures) {
            Host::loadTexture(mSlot, entry.first.c_str(), nullptr, 0, 0, 0);
        }
        effect()->mTextures->clear();
        HostTest::TearDown();
    }
    // Delivers what is queued; the calls it made, without the frame's own "draw".
    Calls deliver() {
        Host::draw(mSlot);
        Calls all = takeCalls();
        all.pop_back();
        return all;
    }
    vi::Texture* texture(const char* name) { return effect()->mTextures->at(name); }
};

TEST_F(RunningHostTest, TouchesAreNormalisedFromTheBottomLeftAndEachActionReachesItsPointer) {
    Host::onTouch(mSlot, 0, kHeight, 0);
    Host::onTouch(mSlot, kWidth, 0, 2);
    Host::onTouch(mSlot, 16, 48, 1);
    for (int action = 3; action < 9; ++action) {
        Host::onTouch(mSlot, 32, 32, action);
    }
    Host::onTouch(mSlot, 1, 1, 9);  // unknown actions queue nothing
    Host::onTouch(mSlot, 1, 1, -1);
    EXPECT_EQ(deliver(), (Calls{"onTouchDown 0 0", "onTouchMove 1 1", "onTouchUp 0.25 0.25",
                                "onSecondTouchDown 0.5 0.5", "onSecondTouchUp 0.5 0.5",
                                "onSecondTouchMove 0.5 0.5", "onThirdTouchDown 0.5 0.5",
                                "onThirdTouchUp 0.5 0.5", "onThirdTouchMove 0.5 0.5"}));
}

TEST_F(RunningHostTest, MovesFollowOnlyAPressedPointerAndClearReleasesEveryPointer) {
    Host::onTouch(mSlot, 16, 48, 0);  // down at (0.25, 0.25)
    Host::onTouch(mSlot, 32, 32, 2);  // move while pressed
    Host::onTouch(mSlot, 48, 16, 3);  // second pointer down at (0.75, 0.75)
    deliver();
    EXPECT_EQ(effect()->mTouchStart, glm::vec2(0.25f, 0.25f));
    EXPECT_EQ(effect()->mTouchCurrent, glm::vec2(0.5f, 0.5f));
    EXPECT_EQ(std::pair(effect()->mIsTouched, effect()->mIsSecondTouched), std::pair(true, true));
    Host::onTouch(mSlot, 48, 16, 1);      // up at (0.75, 0.75)
    Host::onTouch(mSlot, 0, 64, 2);       // move while released: hook only
    Host::clear(mSlot);                   // releases every pointer at its last position
    Host::showAffordance(mSlot, 32, 16);  // clears first
    Host::showUnlock(mSlot);
    EXPECT_EQ(deliver(),
              (Calls{"onTouchUp 0.75 0.75", "onTouchMove 0 0", "onTouchUp 0.75 0.75",
                     "onSecondTouchUp 0.75 0.75", "onThirdTouchUp 0 0", "onClear",
                     "onTouchUp 0.75 0.75", "onSecondTouchUp 0.75 0.75", "onThirdTouchUp 0 0",
                     "onClear", "onShowAffordance 0.5 0.75", "onShowUnlock"}));
    EXPECT_EQ(effect()->mTouchCurrent, glm::vec2(0.75f, 0.75f));
    EXPECT_EQ(std::pair(effect()->mIsTouched, effect()->mIsSecondTouched), std::pair(false, false));
}

TEST_F(RunningHostTest, ReloadingANameSwapsPixelsInTheSameTextureAndNullRemovesIt) {
    Host::destroy(mSlot);
    ASSERT_TRUE(load());
    int32_t first[4] = {0, 0, 0, 0};
    Host::loadTexture(mSlot, "noise", first, 4, 2, 2);
    vi::Texture* loaded = texture("noise");
    int32_t second[1] = {0x7F3366CC};
    Host::loadTexture(mSlot, "noise", second, 1, 1, 1);  // not ready: no hook
    EXPECT_EQ(uint32_t(second[0]), 0x7FCC6633u);         // Java's array swapped to RGBA, alpha kept
    EXPECT_EQ(texture("noise"), loaded);
    EXPECT_EQ(loaded->mTexelSize, glm::vec2(1.0f, 1.0f));
    Host::init(mSlot, kWidth, kHeight, false);
    Host::loadTexture(mSlot, "noise", first, 4, 2, 2);
    EXPECT_EQ(takeCalls(), (Calls{"destroy", "create", "initLandscape", "onTextureChanged"}));

    Host::loadTexture(mSlot, "noise", nullptr, 0, 0, 0);  // removed: the name stays, empty
    EXPECT_EQ(texture("noise"), nullptr);
    const auto& list = effect()->mTextureList;
    EXPECT_EQ(std::find(list.begin(), list.end(), loaded), list.end());
}

TEST_F(RunningHostTest, BackgroundOnlyDrawsTheBgTextureOrWarnsEachTime) {
    LogCapture log;
    Host::drawBgOnly(mSlot, kWidth, kHeight);
    Host::drawBgOnly(mSlot, kWidth, kHeight);
    EXPECT_EQ(log.count("NATIVE WARNING: Texture 'bg' not found"), 2);  // not cached

    // 8 x 8, rows top first as Java hands them over: red, green / blue, white quadrants.
    const uint32_t colours[4] = {0xFFFF0000u, 0xFF00FF00u, 0xFF0000FFu, 0xFFFFFFFFu};
    int32_t quadrants[64];
    for (int i = 0; i < 64; ++i) {
        quadrants[i] = static_cast<int32_t>(colours[i / 32 * 2 + i % 8 / 4]);
    }
    Host::loadTexture(mSlot, "bg", quadrants, 64, 8, 8);
    Host::drawBgOnly(mSlot, kWidth, kHeight);
    EXPECT_EQ(pixel(8, 56), 0xFF0000FFu);
    EXPECT_EQ(pixel(56, 56), 0x00FF00FFu);
    EXPECT_EQ(pixel(8, 8), 0x0000FFFFu);
    EXPECT_EQ(pixel(56, 8), 0xFFFFFFFFu);
}

// Both instances list the shared "bg"; removed through one, it leaves the other's list and
// "bg" cache too, so neither draws from freed memory and a new "bg" is found again.
TEST_F(RunningHostTest, ATextureRemovedThroughAnotherInstanceLeavesEveryListAndCache) {
    int32_t red[1] = {int32_t(0xFFFF0000u)};
    Host::loadTexture(mSlot, "bg", red, 1, 1, 1);
    Host::drawBgOnly(mSlot, kWidth, kHeight);  // caches it
    const vi::Texture* removed = texture("bg");
    vi::HostInstance other;
    Calls names;
    ASSERT_TRUE(Host::loadEffect(other, RECORDING_EFFECT_PATH, names));
    Host::loadTexture(other, "bg", nullptr, 0, 0, 0);
    const auto& list = effect()->mTextureList;
    EXPECT_EQ(std::find(list.begin(), list.end(), removed), list.end());
    EXPECT_EQ(effect()->mBackgroundTexture, nullptr);

    int32_t green[1] = {int32_t(0xFF00FF00u)};
    Host::loadTexture(other, "bg", green, 1, 1, 1);
    Host::draw(mSlot);
    Host::drawBgOnly(mSlot, kWidth, kHeight);
    EXPECT_EQ(pixel(32, 32), 0x00FF00FFu);
    Host::destroy(other);
}

TEST_F(RunningHostTest, ModelsAreParsedIntoTheEffectsMapAndRemovedByName) {
    const unsigned char model[44] = {1};  // one vertex, no indices: 8 + 36 bytes
    Host::loadModel(mSlot, "cube", model, sizeof model);
    ASSERT_NE(effect()->mModels["cube"], nullptr);
    EXPECT_EQ(effect()->mModels["cube"]->getLength(), 44u);
    Host::loadModel(mSlot, "cube", nullptr, 0);
    EXPECT_EQ(effect()->mModels.at("cube"), nullptr);
    Host::loadModel(mSlot, "cube", model, sizeof model);
    Host::loadModel(mSlot, "cube", model, sizeof model);  // replaces without a double free
    delete effect()->mModels["cube"];
}

TEST_F(RunningHostTest, PauseFreezesTheClockUntilResume) {
    Host::pauseAnimation();
    Host::draw(mSlot);
    const float frozen = vi::IAnimationManager::mNow;
    Host::draw(mSlot);
    EXPECT_EQ(vi::IAnimationManager::mNow, frozen);
    Host::resumeAnimation();
    EXPECT_FALSE(vi::Timer::mIsPaused);
}

TEST_F(RunningHostTest, AfterALostContextRenderersDrawWithTheNewProgramsLocations) {
    vi::ShaderProgram* program = vi::ShaderProgram::addProgram(new vi::ShaderProgram(
        "attribute vec2 aPosition; attribute vec4 aColor; varying vec4 vColor;"
        "void main() { vColor = aColor; gl_Position = vec4(aPosition, 0.0, 1.0); }",
        "precision mediump float; varying vec4 vColor; void main() { gl_FragColor = vColor; }", 0));
    vi::Drawable quad;
    quad.mMode = GL_TRIANGLE_STRIP;
    quad.mDimension = 2;
    quad.mPositions2 = {{-1, -1}, {1, -1}, {-1, 1}, {1, 1}};
    const float green[16] = {0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1};
    auto renderer = std::make_unique<vi::Renderer>(*program, quad);
    renderer->addAttribute("aPosition", quad.mPositions2.data(), 2, true);
    renderer->addAttribute("aColor", green, 4, true);
    renderer->draw();
    ASSERT_EQ(pixel(32, 32), 0x00FF00FFu);
    // As if the lost context's program had placed the two attributes the other way round.
    std::swap(renderer->mAttributes[0]->mLocation, renderer->mAttributes[1]->mLocation);
    loseContext();
    Host::draw(mSlot);
    renderer->draw();
    EXPECT_EQ(pixel(32, 32), 0x00FF00FFu);
    renderer.reset();
    program->destroy();
}

// Java's input thread queues touches and pauses the clock while the GL thread draws. The
// suite's name is what make test runs under ThreadSanitizer.
using HostThreadsTest = RunningHostTest;

TEST_F(HostThreadsTest, TouchesFromAnotherThreadArriveOnceAndInOrder) {
    constexpr int kTouches = 2000;
    std::thread input([this] {
        for (int i = 0; i < kTouches; ++i) {
            Host::onTouch(mSlot, i, kHeight, 2);
            if (i % 100 == 0) {
                Host::pauseAnimation();
                Host::resumeAnimation();
            }
        }
    });
    for (int frame = 0; frame < 3000; ++frame) {
        Host::draw(mSlot);
    }
    input.join();
    Host::draw(mSlot);
    int next = 0;
    for (const std::string& call : takeCalls()) {
        float x = 0.0f;
        if (sscanf(call.c_str(), "onTouchMove %f", &x) == 1) {
            ASSERT_NEAR(x * kWidth, next, 0.5f);
            ++next;
        }
    }
    EXPECT_EQ(next, kTouches);
}

// A second surface, on its own thread and context, draws only its background while the first
// draws frames: the temporary background leaves the registries inside the mutex.
TEST_F(HostThreadsTest, ABackgroundDrawnOnAnotherThreadLeavesTheRegistriesInsideTheMutex) {
    std::atomic<bool> done{false};
    std::thread second([&done] {
        qam::HeadlessContext context(kWidth, kHeight);
        context.makeCurrent();
        vi::HostInstance slot;
        Calls names;
        ASSERT_TRUE(Host::loadEffect(slot, RECORDING_EFFECT_PATH, names));
        Host::init(slot, kWidth, kHeight, false);
        int32_t grey[1] = {int32_t(0xFF808080u)};
        Host::loadTexture(slot, "bg", grey, 1, 1, 1);
        for (int frame = 0; frame < 300; ++frame) {
            Host::drawBgOnly(slot, kWidth, kHeight);
        }
        Host::loadTexture(slot, "bg", nullptr, 0, 0, 0);
        Host::destroy(slot);
        done = true;
    });
    while (!done) {
        Host::draw(mSlot);
    }
    second.join();
}

}  // namespace
