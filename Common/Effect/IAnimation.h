#pragma once

#include "Common/Platform/Export.h"

namespace vi {

// An animation an effect runs through its AnimationManager. The manager drives update(),
// isRunning() and stop(); start() and getDuration() are for the effect's own use.
class TALVEQAM_EXPORT IAnimation {
  public:
    virtual ~IAnimation();
    // Begins the animation at clock time `now` (IAnimationManager::mNow).
    virtual void start(float now) = 0;
    // Length in seconds; negative for an animation without an end.
    virtual float getDuration() const = 0;
    // Advances to clock time `now`.
    virtual void update(float now) = 0;
    virtual bool isRunning() = 0;
    virtual void stop() = 0;
};

}  // namespace vi
