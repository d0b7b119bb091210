#include "Common/Native/Host.h"
#include "Common/Native/HostLock.h"
#include "Common/Platform/Log.h"

namespace vi {

using namespace qam::host;

namespace {

using Event = Effect::EffectEvent;

Event makeEvent(int kind) {
    Event event{};
    event.mKind = kind;
    return event;
}

// Pixels (y downwards) to the effect's normalised space (origin bottom-left).
glm::vec2 normalise(const Effect& effect, int x, int y) {
    const float width = static_cast<float>(effect.mScreenSize.x);
    const float height = static_cast<float>(effect.mScreenSize.y);
    return glm::vec2(static_cast<float>(x) / width, (height - static_cast<float>(y)) / height);
}

void queue(EffectSlot& slot, int kind) {
    HostLock lock;
    effectOrPending(slot.get()).mEvents.push_back(makeEvent(kind));
}

void queueAt(EffectSlot& slot, int kind, int x, int y) {
    HostLock lock;
    Effect& effect = effectOrPending(slot.get());
    Event event = makeEvent(kind);
    event.mPosition = normalise(effect, x, y);
    effect.mEvents.push_back(event);
}

}  // namespace

void Host::onTouch(EffectSlot& slot, int x, int y, int action) {
    if (action < 0 || action > 8) {
        return;  // any other action is ignored
    }
    queueAt(slot, Event::kTouchDown + action, x, y);
}

void Host::clear(EffectSlot& slot) {
    queue(slot, Event::kClear);
}

void Host::showUnlock(EffectSlot& slot) {
    queue(slot, Event::kShowUnlock);
}

void Host::showAffordance(EffectSlot& slot, int x, int y) {
    queueAt(slot, Event::kShowAffordance, x, y);
}

void Host::setParameters(EffectSlot& slot, const int32_t* keys, const float* values, size_t count) {
    HostLock lock;
    Effect& effect = effectOrPending(slot.get());
    if (count > 0 && (keys == nullptr || values == nullptr)) {
        qam::logErrorOnce(&effect, "setParameters: keys or values missing, ignored");
        return;
    }
    for (size_t i = 0; i < count; ++i) {
        gParameters[keys[i]] = values[i];
        Event event = makeEvent(Event::kSetParameter);
        event.mKey = keys[i];
        event.mValue = values[i];
        effect.mEvents.push_back(event);
    }
}

}  // namespace vi
