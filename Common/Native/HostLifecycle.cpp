#include <dlfcn.h>

#include "Common/Effect/Timer.h"
#include "Common/Native/Host.h"
#include "Common/Native/HostLock.h"
#include "Common/Native/InstanceEntry.h"
#include "Common/Platform/Log.h"
#include "Common/Renderer/Base/Texture.h"

namespace vi {

using namespace qam::host;

void Host::init(EffectSlot& slot, int width, int height, bool recycle) {
    HostLock lock;
    Effect* effect = slot.get();
    if (effect == nullptr) {
        return;
    }
    Timer::restart();
    enterInstanceAndNotify(*effect);
    effect->initEffect(width, height);
    // Static textures are on the GPU by now: their pixels are no longer needed.
    for (Texture* texture : effect->mTextureList) {
        if (texture->mIsStatic) {
            if (texture->mIsDeletable) {
                free(texture->mBuffer);
            }
            texture->mBuffer = nullptr;
        }
    }
    Texture::mIsNeedToRecycle = recycle;
    for (const auto& [key, value] : gParameters) {
        Effect::EffectEvent event{};
        event.mKey = key;
        event.mValue = value;
        event.mKind = Effect::EffectEvent::kSetParameter;
        effect->mEvents.push_back(event);
    }
}

bool Host::loadEffect(EffectSlot& slot, const char* path, std::vector<std::string>& resourceNames) {
    HostLock lock;
    dlerror();
    if (path == nullptr) {  // a null Java string has no characters to open
        qam::logErrorOnce(&effectOrPending(slot.get()), "loadEffect: no library path, ignored");
        return false;
    }
    gEffectLibrary = dlopen(path, RTLD_NOW);
    if (gEffectLibrary == nullptr) {
        qam::logError("dlopen error: %s", dlerror());
        return false;
    }
    gCreateScene = reinterpret_cast<CreateScene>(dlsym(gEffectLibrary, "createScene"));
    if (gCreateScene == nullptr) {
        qam::logError("dlsym error: %s", dlerror());
        return false;
    }
    if (Effect* old = slot.get()) {
        enterInstanceAndNotify(*old);
        delete old;
        slot.set(nullptr);
    }
    Effect* effect = gCreateScene();
    if (effect == nullptr) {  // nothing to hand the pending events to
        qam::logErrorOnce(&gPendingHolder, "loadEffect: createScene of %s made no effect", path);
        return false;  // pending events stay for the next effect
    }
    effect->mEvents = gPendingHolder.mEvents;
    gPendingHolder.mEvents.clear();
    slot.set(effect);
    resourceNames = effect->mResourceNames;
    return true;
}

void Host::destroy(EffectSlot& slot) {
    HostLock lock;
    Effect* effect = slot.get();
    gParameters.clear();
    if (effect == nullptr) {
        return;
    }
    enterInstanceAndNotify(*effect);
    delete effect;
    slot.set(nullptr);
}

void Host::pauseAnimation() {
    Timer::pause();
}

void Host::resumeAnimation() {
    Timer::resume();
}

}  // namespace vi
