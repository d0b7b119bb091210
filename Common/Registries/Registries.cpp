#include "Common/Registries/Registries.h"

#include <algorithm>

#include "Common/Effect/EventHolder.h"

namespace qam::registries {
namespace {

// Never destroyed: an effect that dies at exit, after this unit's statics, still leaves it.
std::vector<vi::Effect*>& live() {
    static auto* effects = new std::vector<vi::Effect*>();
    return *effects;
}

}  // namespace

// One translation unit, so the order of construction is the order of definition: the holder
// finds its context's texture map.
std::map<void*, TextureMap> gTextureMap;
vi::EventHolder gPendingHolder;
std::map<int, float> gParameters;

void addLiveEffect(vi::Effect* effect) {
    live().push_back(effect);
}

void removeLiveEffect(vi::Effect* effect) {
    auto& effects = live();
    effects.erase(std::remove(effects.begin(), effects.end(), effect), effects.end());
}

const std::vector<vi::Effect*>& liveEffects() {
    return live();
}

void forgetSharedTexture(const vi::Texture* texture) {
    for (vi::Effect* effect : live()) {
        auto& list = effect->mTextureList;
        list.erase(std::remove(list.begin(), list.end(), texture), list.end());
        if (effect->mBackgroundTexture == texture) {
            effect->mBackgroundTexture = nullptr;
        }
    }
}

}  // namespace qam::registries
