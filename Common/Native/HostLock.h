#pragma once

#include "Common/Native/HostState.h"

namespace qam::host {

// Holds the host mutex for a scope; unlock() lets go earlier.
class HostLock {
  public:
    HostLock() { pthread_mutex_lock(&gHostMutex); }
    ~HostLock() { unlock(); }
    HostLock(const HostLock&) = delete;
    HostLock& operator=(const HostLock&) = delete;

    void unlock() {
        if (mLocked) {
            mLocked = false;
            pthread_mutex_unlock(&gHostMutex);
        }
    }

  private:
    bool mLocked = true;
};

}  // namespace qam::host
