#pragma once

#include <map>
#include <string>
#include <vector>

namespace vi {
class Effect;
class EventHolder;
class Texture;
}  // namespace vi

// The state that outlives every effect: the textures Java loaded, the stored parameters, the
// effect that holds input while an instance has none, and the list of every effect alive.
// Owned here, below both the effects that read it and the host that fills it; built by the
// library's static initialisation and used under the host mutex only.
namespace qam::registries {

using TextureMap = std::map<std::string, vi::Texture*>;

// Textures loaded from Java, per EGL context, shared by every effect made on that context.
extern std::map<void*, TextureMap> gTextureMap;
// Collects the events (and textures) that arrive while a Java instance has no effect.
extern vi::EventHolder gPendingHolder;
// Parameters from Java, replayed by every init until destroy.
extern std::map<int, float> gParameters;

// Every effect between its construction and its destruction, the pending holder included.
void addLiveEffect(vi::Effect* effect);
void removeLiveEffect(vi::Effect* effect);
const std::vector<vi::Effect*>& liveEffects();

// Before a shared texture is deleted: the lists and "bg" caches of every live effect let go of
// it, so none of them is left pointing at freed memory.
void forgetSharedTexture(const vi::Texture* texture);

}  // namespace qam::registries
