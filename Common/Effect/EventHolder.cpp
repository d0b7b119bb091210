#include "Common/Effect/EventHolder.h"

namespace vi {

EventHolder::EventHolder() : Effect(&mAnimations) {}

}  // namespace vi
