#include <GLES2/gl2.h>

#include "Common/Native/Host.h"
#include "Common/Native/HostLock.h"
#include "Common/Native/InstanceEntry.h"
#include "Common/Platform/Log.h"
#include "Common/Renderer/Base/Background.h"
#include "Common/Renderer/Base/RenderableTexture.h"
#include "Common/Renderer/Base/Texture.h"

namespace vi {

using namespace qam::host;

namespace {

// E's cached "bg", else the one in its texture map, else its error texture (not cached, so a
// missing "bg" is looked up and reported again next time).
Texture* backgroundTexture(Effect& effect) {
    if (effect.mBackgroundTexture != nullptr) {
        return effect.mBackgroundTexture;
    }
    Texture* texture = effect.mErrorTexture;
    const auto found = effect.mTextures->find("bg");
    if (found == effect.mTextures->end()) {
        qam::logError("NATIVE WARNING: Texture '%s' not found", "bg");
    } else if (found->second != nullptr) {
        texture = found->second;
    }
    if (texture != effect.mErrorTexture) {
        effect.mBackgroundTexture = texture;
    }
    return texture;
}

}  // namespace

bool Host::draw(EffectSlot& slot) {
    HostLock lock;
    Effect* effect = slot.get();
    if (effect == nullptr || !effect->mIsReady) {
        qam::logError("WARNING: DRAWING SKIPPED!!!!!!!!!!!!");
        return false;
    }
    if (!enterInstance(*effect)) {
        rebuildGLObjects(*effect);
    }
    IAnimationManager* animations = effect->mAnimationManager;  // null: an effect without any
    if (animations != nullptr) {
        animations->update();
    }
    // By index: a hook may append to the queue while it is delivered.
    for (size_t i = 0; i < effect->mEvents.size(); ++i) {
        const Effect::EffectEvent event = effect->mEvents[i];
        effect->dispatchEvent(event);
    }
    effect->mEvents.clear();  // keeps its storage: no allocation per frame
    const bool wantsMore = effect->draw();
    const bool animating = animations != nullptr && animations->isAnimating();
    return wantsMore || animating;
}

void Host::drawBgOnly(EffectSlot& slot, int width, int height) {
    HostLock lock;
    Effect& effect = effectOrPending(slot.get());
    RenderableTexture::mCurrentFrameBufferPosition = glm::uvec2(0, 0);
    RenderableTexture::mCurrentFrameBufferSize = glm::uvec2(width, height);
    glViewport(0, 0, width, height);
    Texture* texture = backgroundTexture(effect);
    if (texture == nullptr) {  // nothing to draw from: no "bg" and no error texture before init
        qam::logErrorOnce(&effect, "drawBgOnly: no background and no error texture, nothing drawn");
        return;
    }
    // Made after the lock, so destroyed before it lets go: its renderer and program leave the
    // registries' lists, which another thread's entry may walk as soon as the mutex is free.
    Background background(*texture);
    background.setScreenSize(static_cast<unsigned>(width), static_cast<unsigned>(height));
    background.renderFrame();
}

}  // namespace vi
