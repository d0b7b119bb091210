// Call sequences on the host, as a lock screen may make them: the entry points of Java's Native
// class in any order, on three instances and three contexts (two kept, one replaced to stand for
// a lost one), with valid, short and missing arrays and any sizes. After every call the
// registries hold only live textures, each listed once by each effect, and every "bg" cache is
// what its map holds; every program ends with a frame drawn by each instance that has an effect.
//
// Input: one mode byte (bit 0: every live instance also draws after each call), then calls of
// one opcode byte and its argument bytes; missing bytes read as 0.
#include <EGL/egl.h>
#include <dlfcn.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Common/Effect/EventHolder.h"
#include "Common/Native/Host.h"
#include "Common/Platform/HeadlessContext.h"
#include "Common/Registries/Registries.h"
#include "Common/Renderer/Base/ModelObject.h"
#include "Common/Renderer/Base/Texture.h"

namespace {

using vi::Host;

constexpr int kSurface = 16;
constexpr int kSlots = 3;
const char* const kTextureNames[] = {"bg", "noise", "mask"};
const int kSizes[] = {0, 1, 2, 3, kSurface, -1, -7, 48};
const int kCoordinates[] = {0, 8, kSurface, -3, 100000};
const char* const kLibraries[] = {RECORDING_EFFECT_PATH, SAMPLE_EFFECT_PATH, NULL_EFFECT_PATH,
                                  "/nonexistent/libqam_missing.so",
                                  "libm.so.6"};  // opens, but has no "createScene"

// Contexts and slots live for the whole run: Mesa must stay loaded until exit.
struct World {
    qam::HeadlessContext first{kSurface, kSurface};
    qam::HeadlessContext second{kSurface, kSurface};
    qam::HeadlessContext lost{kSurface, kSurface};  // replaced each time it is chosen
    vi::HostInstance slots[kSlots];
};

World& world() {
    static World* made = new World();
    return *made;
}

// Reads the program front to back; past its end every byte is 0.
class Program {
  public:
    Program(const uint8_t* data, size_t size) : mData(data), mSize(size) {}
    uint8_t byte() { return mAt < mSize ? mData[mAt++] : 0; }
    template <typename T, size_t N>
    const T& pick(const T (&table)[N]) {
        return table[byte() % N];
    }
    vi::HostInstance& slot() { return world().slots[byte() % kSlots]; }
    bool done() const { return mAt >= mSize; }

  private:
    const uint8_t* mData;
    size_t mSize;
    size_t mAt = 0;
};

[[noreturn]] void broken(const char* what) {
    fprintf(stderr, "HostFuzz: %s\n", what);
    abort();
}

void checkRegistries() {
    const auto& live = qam::registries::liveEffects();
    for (vi::HostInstance& slot : world().slots) {
        if (slot.get() != nullptr &&
            std::find(live.begin(), live.end(), slot.get()) == live.end()) {
            broken("an instance's effect is not among the live effects");
        }
    }
    for (vi::Effect* effect : live) {
        std::set<const vi::Texture*> listed;
        for (const vi::Texture* texture : effect->mTextureList) {
            if (!listed.insert(texture).second) {
                broken("a texture is listed twice");
            }
            // AddressSanitizer stops here when the texture was freed.
            static_cast<void>(*static_cast<const volatile unsigned*>(&texture->mWidth));
        }
        if (effect->mBackgroundTexture != nullptr) {
            const auto found = effect->mTextures->find("bg");
            if (found == effect->mTextures->end() || found->second != effect->mBackgroundTexture) {
                broken("the cached background is not the map's \"bg\"");
            }
        }
    }
}

void drawEveryInstance() {
    for (vi::HostInstance& slot : world().slots) {
        if (slot.get() != nullptr) {
            Host::draw(slot);
        }
    }
}

void switchContext(uint8_t which) {
    switch (which % 3) {
        case 0:
            world().first.makeCurrent();
            break;
        case 1:
            world().second.makeCurrent();
            break;
        default:
            world().lost.replaceContext();
            break;
    }
}

void loadTexture(Program& program) {
    vi::HostInstance& slot = program.slot();
    const char* name = program.pick(kTextureNames);
    const int width = program.pick(kSizes);
    const int height = program.pick(kSizes);
    const uint8_t shape = program.byte() % 3;  // whole, one pixel short, none
    const uint8_t fill = program.byte();
    const size_t whole = width > 0 && height > 0 ? size_t(width) * size_t(height) : 0;
    const size_t count = shape == 2 ? 0 : shape == 0 ? whole : whole > 0 ? whole - 1 : 0;
    // Exactly `count` pixels on the heap, so a read past them is caught.
    std::unique_ptr<int32_t[]> pixels(shape == 2 ? nullptr : new int32_t[count + (count == 0)]);
    for (size_t i = 0; i < count; ++i) {
        pixels[i] = int32_t(0x01010101u * fill + i);
    }
    Host::loadTexture(slot, name, pixels.get(), count, width, height);
}

void loadModel(Program& program) {
    vi::HostInstance& slot = program.slot();
    const char* name = program.pick(kTextureNames);
    const uint8_t length = program.byte();
    if (length == 0xFF) {
        Host::loadModel(slot, name, nullptr, 0);
        return;
    }
    std::vector<uint8_t> bytes(length % 96);
    for (uint8_t& b : bytes) {
        b = program.byte();
    }
    Host::loadModel(slot, name, bytes.data(), bytes.size());
}

void setParameters(Program& program) {
    vi::HostInstance& slot = program.slot();
    const size_t count = program.byte() % 4;
    const bool missing = program.byte() % 8 == 0;
    std::unique_ptr<int32_t[]> keys(new int32_t[count + 1]);
    std::unique_ptr<float[]> values(new float[count + 1]);
    for (size_t i = 0; i < count; ++i) {
        keys[i] = int8_t(program.byte());
        values[i] = float(program.byte()) / 64.0f;
    }
    Host::setParameters(slot, missing ? nullptr : keys.get(), values.get(), count);
}

void loadEffect(vi::HostInstance& slot, const char* path) {
    std::vector<std::string> names;
    Host::loadEffect(slot, path, names);
}

void call(Program& program) {
    switch (program.byte() % 14) {
        case 0:
            switchContext(program.byte());
            break;
        case 1: {
            vi::HostInstance& slot = program.slot();
            loadEffect(slot, program.pick(kLibraries));
            break;
        }
        case 2: {
            vi::HostInstance& slot = program.slot();
            const int width = program.pick(kSizes);
            const int height = program.pick(kSizes);
            Host::init(slot, width, height, program.byte() % 2 == 1);
            break;
        }
        case 3:
            Host::destroy(program.slot());
            break;
        case 4:
            loadTexture(program);
            break;
        case 5:
            loadModel(program);
            break;
        case 6:
            Host::draw(program.slot());
            break;
        case 7: {
            vi::HostInstance& slot = program.slot();
            const int width = program.pick(kSizes);
            Host::drawBgOnly(slot, width, program.pick(kSizes));
            break;
        }
        case 8: {
            vi::HostInstance& slot = program.slot();
            const int x = program.pick(kCoordinates);
            const int y = program.pick(kCoordinates);
            Host::onTouch(slot, x, y, int(program.byte() % 11) - 1);  // -1 to 9
            break;
        }
        case 9:
            Host::clear(program.slot());
            break;
        case 10:
            Host::showUnlock(program.slot());
            break;
        case 11: {
            vi::HostInstance& slot = program.slot();
            const int x = program.pick(kCoordinates);
            Host::showAffordance(slot, x, program.pick(kCoordinates));
            break;
        }
        case 12:
            setParameters(program);
            break;
        default:
            if (program.byte() % 2 == 0) {
                Host::pauseAnimation();
            } else {
                Host::resumeAnimation();
            }
            break;
    }
}

// Back to an empty host, through the entry points where Java has them, so that each program
// runs from the same start.
void reset() {
    World& all = world();
    all.first.makeCurrent();
    vi::Effect& pending = qam::registries::gPendingHolder;
    for (vi::HostInstance& slot : all.slots) {
        vi::Effect& effect = slot.get() != nullptr ? *slot.get() : pending;
        // Models stay with a deleted effect; Java removes them first.
        while (!effect.mModels.empty()) {
            Host::loadModel(slot, effect.mModels.begin()->first.c_str(), nullptr, 0);
            effect.mModels.erase(effect.mModels.begin());
        }
        Host::destroy(slot);
    }
    for (auto& [context, textures] : qam::registries::gTextureMap) {
        for (auto& [name, texture] : textures) {
            qam::registries::forgetSharedTexture(texture);
            delete texture;
        }
        textures.clear();
    }
    pending.mEvents.clear();
    // GL objects that effects deleted on another context than their own stay on theirs: new
    // contexts drop them, as a device's would at its next loss.
    all.second.replaceContext();
    all.first.replaceContext();
    Host::resumeAnimation();
    using Reset = void (*)();
    if (auto* resetCalls = reinterpret_cast<Reset>(dlsym(RTLD_DEFAULT, "recordingEffectReset"))) {
        resetCalls();  // its log of hook calls grows with every program otherwise
    }
}

// Java loads the library on its GL thread, so the pending holder shares the texture map of the
// context current then: here the first one, as each program starts.
void start() {
    world().first.makeCurrent();
    vi::Effect& pending = qam::registries::gPendingHolder;
    pending.mEglContext = eglGetCurrentContext();
    pending.mTextures = &qam::registries::gTextureMap[pending.mEglContext];
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Program program(data, size);
    const bool drawAfterEachCall = program.byte() & 1;
    start();
    while (!program.done()) {
        call(program);
        checkRegistries();
        if (drawAfterEachCall) {
            drawEveryInstance();
            checkRegistries();
        }
    }
    drawEveryInstance();
    checkRegistries();
    reset();
    return 0;
}
