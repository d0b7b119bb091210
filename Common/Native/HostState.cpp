#include "Common/Native/HostState.h"

namespace qam::host {

// One translation unit, so the order of construction is the order of definition.
std::map<void*, vi::Effect::TextureMap> gTextureMap;
vi::EventHolder gPendingHolder;
std::map<int, float> gParameters;
pthread_mutex_t gHostMutex = PTHREAD_MUTEX_INITIALIZER;

CreateScene gCreateScene = nullptr;
void* gEffectLibrary = nullptr;

}  // namespace qam::host
