#pragma once

#include <ctime>

#include "Common/Platform/Export.h"

namespace vi {

// The process-wide clock of all effects: seconds of wall-clock time since the last restart,
// which pause() freezes. Java pauses and resumes it from any thread, so the statics are only
// touched under the clock's own lock, through these calls.
class TALVEQAM_EXPORT Timer {
  public:
    // Seconds since the origin, or the frozen time while paused.
    static float read();
    // Moves the origin to now, unpauses, and stores the new time in IAnimationManager::mNow.
    static void restart();
    static void pause();
    static void resume();

    static timespec mStartingCnt;
    static timespec mCurrentCnt;
    static bool mIsPaused;
    static float mPausedTime;
};

}  // namespace vi
