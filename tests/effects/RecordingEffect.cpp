// A test effect: records every hook call and fills the screen with a colour set through
// parameters 0 to 3 (red, green, blue, alpha). Parameter 100 starts an animation that runs
// for the value in seconds.
#include "tests/effects/RecordingEffect.h"

#include <cstdio>
#include <memory>
#include <string>

#include "Common/Effect/AnimationManager.h"
#include "Common/Effect/Effect.h"
#include "tests/outside/FlatColour.h"

namespace {

std::string gCalls;

void record(const std::string& call) {
    gCalls += call + "\n";
}

std::string at(const char* hook, const glm::vec2& p) {
    char text[96];
    snprintf(text, sizeof text, "%s %g %g", hook, p.x, p.y);
    return text;
}

class TimedAnimation : public vi::IAnimation {
  public:
    void start(float now) override {
        mStart = now;
        mRunning = true;
    }
    void update(float now) override {
        if (mRunning && now - mStart >= mDuration) {
            mRunning = false;
        }
    }
    bool isRunning() override { return mRunning; }
    void stop() override { mRunning = false; }
    float mDuration = 0.0f;

  private:
    float mStart = 0.0f;
    bool mRunning = false;
};

// Built before and destroyed after the Effect base, which stops the animations as it dies.
struct RecordingAnimations {
    vi::AnimationManager<RecordingAnimations> mAnimations;
    TimedAnimation mAnimation;
};

class RecordingEffect : private RecordingAnimations, public vi::Effect {
  public:
    RecordingEffect() : Effect(&mAnimations) {
        makeCurrent();
        record("create");
        mResourceNames = {"bg", "noise", "mask"};
        mFlat = std::make_unique<FlatColour>();
        mAnimations.addAnimation(&mAnimation);
    }
    ~RecordingEffect() override {
        record("destroy");
        mFlat.reset();
    }

    void onClear() override { record("onClear"); }
    void onShowAffordance(const glm::vec2& p) override { record(at("onShowAffordance", p)); }
    void onShowUnlock() override { record("onShowUnlock"); }
    void onTextureChanged() override { record("onTextureChanged"); }
    void initPortrait() override { record("initPortrait"); }
    void initLandscape() override { record("initLandscape"); }
    bool draw() override {
        record("draw");
        mFlat->draw();
        return false;
    }
    void onTouchDown(const glm::vec2& p) override { record(at("onTouchDown", p)); }
    void onTouchUp(const glm::vec2& p) override { record(at("onTouchUp", p)); }
    void onTouchMove(const glm::vec2& p) override { record(at("onTouchMove", p)); }
    void onSecondTouchDown(const glm::vec2& p) override { record(at("onSecondTouchDown", p)); }
    void onSecondTouchUp(const glm::vec2& p) override { record(at("onSecondTouchUp", p)); }
    void onSecondTouchMove(const glm::vec2& p) override { record(at("onSecondTouchMove", p)); }
    void onThirdTouchDown(const glm::vec2& p) override { record(at("onThirdTouchDown", p)); }
    void onThirdTouchUp(const glm::vec2& p) override { record(at("onThirdTouchUp", p)); }
    void onThirdTouchMove(const glm::vec2& p) override { record(at("onThirdTouchMove", p)); }
    void setParameter(int key, float value) override {
        char text[64];
        snprintf(text, sizeof text, "setParameter %d %g", key, value);
        record(text);
        if (key >= 0 && key < 4) {
            mFlat->mColor[key] = value;
        } else if (key == 100) {
            mAnimation.mDuration = value;
            mAnimation.start(vi::IAnimationManager::mNow);
        }
    }
    void onContextLost() override { record("onContextLost"); }

  private:
    std::unique_ptr<FlatColour> mFlat;
};

}  // namespace

extern "C" {

__attribute__((visibility("default"))) vi::Effect* createScene() {
    return new RecordingEffect();
}

__attribute__((visibility("default"))) const char* recordingEffectCalls() {
    return gCalls.c_str();
}

__attribute__((visibility("default"))) void recordingEffectReset() {
    gCalls.clear();
}
}
