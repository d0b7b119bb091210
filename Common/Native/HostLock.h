#pragma once

#include "Common/Native/HostState.h"

namespace qam::host {

// Holds the host mutex for a scope.
class HostLock {
  public:
    HostLock() { pthread_mutex_lock(&gHostMutex); }
    ~HostLock() { pthread_mutex_unlock(&gHostMutex); }
    HostLock(const HostLock&) = delete;
    HostLock& operator=(const HostLock&) = delete;
};

}  // namespace qam::host
