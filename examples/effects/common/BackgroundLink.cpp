#include "examples/effects/common/BackgroundLink.h"

#include "Common/Effect/Effect.h"
#include "Common/Renderer/Base/Texture.h"
#include "Kinetra/Core/KNTextureManager.h"

namespace qam::samples {

bool BackgroundLink::refresh(vi::Effect& effect) {
    const auto found = effect.mTextures->find("bg");
    vi::Texture* texture = found == effect.mTextures->end() ? nullptr : found->second;
    if (texture == nullptr) {
        const bool changed = mId != 0;
        mId = 0;
        return changed;
    }
    texture->allocate();
    if (texture->mTexture == mId && texture->mWidth == mWidth && texture->mHeight == mHeight) {
        return false;
    }
    mId = texture->mTexture;
    mWidth = texture->mWidth;
    mHeight = texture->mHeight;
    Kinetra::KNTextureManager::getInstancePtr()->setTextureId("bg", mId, static_cast<int>(mWidth),
                                                              static_cast<int>(mHeight));
    return true;
}

}  // namespace qam::samples
