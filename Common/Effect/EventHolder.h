#pragma once

#include "Common/Effect/AnimationManager.h"
#include "Common/Effect/Effect.h"

namespace vi {

class EventHolder;

namespace detail {
// Built before and destroyed after the Effect base, which stops its animations on the way out.
struct EventHolderAnimations {
    AnimationManager<EventHolder> mAnimations;
};
}  // namespace detail

// The do-nothing effect that holds events arriving before any effect exists.
class TALVEQAM_EXPORT EventHolder : private detail::EventHolderAnimations, public Effect {
  public:
    EventHolder();
    void initPortrait() override;
    void initLandscape() override;
    // Never asks for another frame.
    bool draw() override;
};

}  // namespace vi
