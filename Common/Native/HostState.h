#pragma once

#include <pthread.h>

#include "Common/Effect/Effect.h"
#include "Common/Effect/EventHolder.h"
#include "Common/Registries/Registries.h"

// The host's own process-wide state; what outlives effects is in the registries.
namespace qam::host {

using registries::forgetSharedTexture;
using registries::gParameters;
using registries::gPendingHolder;

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
