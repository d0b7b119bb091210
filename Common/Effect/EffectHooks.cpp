// The base bodies of the effect's hooks: they do nothing. They live here rather than in the
// header so that an effect library's vtable refers to the library's own symbols.
#include "Common/Effect/Effect.h"

namespace vi {

void Effect::onClear() {}
void Effect::onShowAffordance(const glm::vec2&) {}
void Effect::onShowUnlock() {}
void Effect::onTextureChanged() {}
void Effect::onTouchDown(const glm::vec2&) {}
void Effect::onTouchUp(const glm::vec2&) {}
void Effect::onTouchMove(const glm::vec2&) {}
void Effect::onSecondTouchDown(const glm::vec2&) {}
void Effect::onSecondTouchUp(const glm::vec2&) {}
void Effect::onSecondTouchMove(const glm::vec2&) {}
void Effect::onThirdTouchDown(const glm::vec2&) {}
void Effect::onThirdTouchUp(const glm::vec2&) {}
void Effect::onThirdTouchMove(const glm::vec2&) {}
void Effect::onIntEventA(int) {}
void Effect::onIntEventB(int) {}
void Effect::onVectorEvent(const glm::vec3&) {}
void Effect::setParameter(int, float) {}
void Effect::onContextLost() {}

}  // namespace vi
