#pragma once

#include "Common/Platform/Export.h"

namespace vi {

// An animation an effect runs through its AnimationManager. The manager calls update(),
// isRunning() and stop() by vtable slot, after exactly three leading slots (the destructor's
// two and start()): an effect library's own animation class lines up with these.
class TALVEQAM_EXPORT IAnimation {
  public:
    virtual ~IAnimation();
    // Begins the animation at clock time `now` (IAnimationManager::mNow).
    virtual void start(float now) = 0;
    // Advances to clock time `now`.
    virtual void update(float now) = 0;
    virtual bool isRunning() = 0;
    virtual void stop() = 0;
};

}  // namespace vi
