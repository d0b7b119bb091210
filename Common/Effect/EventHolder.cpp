#include "Common/Effect/EventHolder.h"

namespace vi {

EventHolder::EventHolder() : Effect(&mAnimations) {}

void EventHolder::initPortrait() {}

void EventHolder::initLandscape() {}

bool EventHolder::draw() {
    return false;
}

}  // namespace vi
