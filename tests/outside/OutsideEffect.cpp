// A flat-colour effect: parameters 0 to 3 set red, green, blue and alpha, a touch swaps
// red and blue. Uses the render core and calls GL itself, as real effects do.
#include <memory>
#include <utility>

#include "Common/Effect/AnimationManager.h"
#include "Common/Effect/Effect.h"
#include "FlatColour.h"

namespace {

// The manager is built before the Effect base that keeps a pointer to it.
struct Animations {
    vi::AnimationManager<Animations> mAnimations;
};

class OutsideEffect : private Animations, public vi::Effect {
  public:
    OutsideEffect() : Effect(&mAnimations) {
        makeCurrent();
        mResourceNames = {"bg"};
        mFlat = std::make_unique<FlatColour>();
    }

    void initPortrait() override {}
    void initLandscape() override {}
    void setParameter(int key, float value) override {
        if (key >= 0 && key < 4) {
            mFlat->mColor[key] = value;
        }
    }
    void onTouchDown(const glm::vec2&) override { std::swap(mFlat->mColor.r, mFlat->mColor.b); }
    bool draw() override {
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        mFlat->draw();
        return false;
    }

  private:
    std::unique_ptr<FlatColour> mFlat;
};

}  // namespace

extern "C" __attribute__((visibility("default"))) vi::Effect* createScene() {
    return new OutsideEffect();
}
