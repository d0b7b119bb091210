#pragma once

#include "Common/Platform/Export.h"

namespace vi {

// Advances an effect's animations once per frame and tells whether any still runs.
class TALVEQAM_EXPORT IAnimationManager {
  public:
    virtual bool isAnimating() = 0;
    virtual void stopAll() = 0;
    virtual void update() = 0;

    // The clock time animations read: seconds since the clock's last restart.
    static float mNow;

  protected:
    ~IAnimationManager() = default;
};

}  // namespace vi
