#pragma once

#include <pthread.h>

#include <map>
#include <string>

#include "Common/Effect/Effect.h"
#include "Common/Effect/EventHolder.h"

// The host's process-wide state, built by the library's static initialisation in this order.
namespace qam::host {

// Textures loaded from Java, per EGL context, shared by every effect made on that context.
extern std::map<void*, vi::Effect::TextureMap> gTextureMap;
// Collects the events that arrive while a Java instance has no effect.
extern vi::EventHolder gPendingHolder;
// Parameters from Java, replayed by every init until destroy.
extern std::map<int, float> gParameters;
// Held for the whole run of every entry point but pause and resume.
extern pthread_mutex_t gHostMutex;

using CreateScene = vi::Effect* (*)();
extern CreateScene gCreateScene;
extern void* gEffectLibrary;  // never closed

// The slot's effect, or the pending holder when the slot has none.
inline vi::Effect& effectOrPending(vi::Effect* effect) {
    return effect != nullptr ? *effect : gPendingHolder;
}

}  // namespace qam::host
