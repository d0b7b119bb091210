#pragma once

#include <algorithm>
#include <vector>

#include "Common/Effect/IAnimation.h"
#include "Common/Effect/IAnimationManager.h"
#include "Common/Effect/Timer.h"

namespace vi {

// Animations are called by vtable slot, not by type: an effect library's own animation class
// whose slots line up with IAnimation's is as good as a derived one, so the calls are exempt
// from the sanitizer's dynamic type check.
#define QAM_CALLS_BY_SLOT __attribute__((no_sanitize("vptr")))

// The animation manager of one effect of type T. It does not own its animations.
template <typename T>
class AnimationManager : public IAnimationManager {
  public:
    void addAnimation(IAnimation* animation) {
        if (animation != nullptr) {
            mAnimations.push_back(animation);
        }
    }
    void removeAnimation(IAnimation* animation) {
        mAnimations.erase(std::remove(mAnimations.begin(), mAnimations.end(), animation),
                          mAnimations.end());
    }

    QAM_CALLS_BY_SLOT bool isAnimating() override {
        for (IAnimation* animation : mAnimations) {
            if (animation->isRunning()) {
                return true;
            }
        }
        return false;
    }

    QAM_CALLS_BY_SLOT void stopAll() override {
        for (IAnimation* animation : mAnimations) {
            animation->stop();
        }
    }

    // Reads the clock into mNow, then again before each animation's update.
    QAM_CALLS_BY_SLOT void update() override {
        mNow = Timer::read();
        for (size_t i = 0; i < mAnimations.size(); ++i) {
            mNow = Timer::read();
            mAnimations[i]->update(mNow);
        }
    }

  private:
    std::vector<IAnimation*> mAnimations;
};

}  // namespace vi

#undef QAM_CALLS_BY_SLOT
