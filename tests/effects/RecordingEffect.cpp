// A test effect: records every hook call and fills the screen with a colour set through
// parameters 0 to 3 (red, green, blue, alpha). Parameter 100 starts an animation that runs
// for the value in seconds.
#include "tests/effects/RecordingEffect.h"

#include <cstdio>
#include <string>

#include "Common/Effect/AnimationManager.h"
#include "Common/Effect/Effect.h"
#include "Common/Renderer/Base/Renderer.h"
#include "Common/Renderer/Base/ShaderProgram.h"

namespace {

std::string gCalls;
int gAlive = 0;

void record(const std::string& call) {
    gCalls += call + "\n";
}

std::string at(const char* hook, const glm::vec2& p) {
    char text[96];
    snprintf(text, sizeof text, "%s %g %g", hook, p.x, p.y);
    return text;
}

const char* const kVertex =
    "attribute vec2 aPosition;\n"
    "void main() { gl_Position = vec4(aPosition, 0.0, 1.0); }\n";
const char* const kFragment =
    "precision mediump float;\n"
    "uniform vec4 uColor;\n"
    "void main() { gl_FragColor = uColor; }\n";

class TimedAnimation : public vi::IAnimation {
  public:
    void start(float now) override {
        mStart = now;
        mRunning = true;
    }
    float getDuration() const override { return mDuration; }
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
        ++gAlive;
        record("create");
        mResourceNames = {"bg", "noise", "mask"};
        mProgram = vi::ShaderProgram::addProgram(new vi::ShaderProgram(kVertex, kFragment, 0));
        mDrawable.mMode = GL_TRIANGLE_STRIP;
        mDrawable.mDimension = 2;
        mDrawable.mPositions2 = {{-1, -1}, {1, -1}, {-1, 1}, {1, 1}};
        mRenderer = new vi::Renderer(*mProgram, mDrawable);
        mRenderer->addAttribute("aPosition", mDrawable.mPositions2.data(), 2, true);
        mRenderer->addUniform("uColor", &mColor, vi::Uniform::kVec4, 1);
        mAnimations.addAnimation(&mAnimation);
    }
    ~RecordingEffect() override {
        record("destroy");
        delete mRenderer;
        mProgram->destroy();
        --gAlive;
    }

    void onClear() override { record("onClear"); }
    void onShowAffordance(const glm::vec2& p) override { record(at("onShowAffordance", p)); }
    void onShowUnlock() override { record("onShowUnlock"); }
    void onTextureChanged() override { record("onTextureChanged"); }
    void initPortrait() override { record("initPortrait"); }
    void initLandscape() override { record("initLandscape"); }
    bool draw() override {
        record("draw");
        mRenderer->draw();
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
            mColor[key] = value;
        } else if (key == 100) {
            mAnimation.mDuration = value;
            mAnimation.start(vi::IAnimationManager::mNow);
        }
    }
    void onContextLost() override { record("onContextLost"); }

  private:
    vi::ShaderProgram* mProgram;
    vi::Drawable mDrawable;
    vi::Renderer* mRenderer;
    glm::vec4 mColor{0.0f, 0.0f, 0.0f, 1.0f};
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

__attribute__((visibility("default"))) int recordingEffectCount() {
    return gAlive;
}
}
