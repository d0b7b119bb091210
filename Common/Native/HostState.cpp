#include "Common/Native/HostState.h"

namespace qam::host {

pthread_mutex_t gHostMutex = PTHREAD_MUTEX_INITIALIZER;

CreateScene gCreateScene = nullptr;
void* gEffectLibrary = nullptr;

}  // namespace qam::host
