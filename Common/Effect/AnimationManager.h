#pragma once

#include <algorithm>
#include <vector>

#include "Common/Effect/IAnimation.h"
#include "Common/Effect/IAnimationManager.h"
#include "Common/Effect/Timer.h"

namespace vi {

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

    bool isAnimating() override {
        for (IAnimation* animation : mAnimations) {
            if (animation->isRunning()) {
                return true;
            }
        }
        return false;
    }

    void stopAll() override {
        for (IAnimation* animation : mAnimations) {
            animation->stop();
        }
    }

    // Reads the clock into mNow, then again before each animation's update.
    void update() override {
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
