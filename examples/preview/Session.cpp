#include "examples/preview/Session.h"

#include <dlfcn.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>

namespace qam::preview {
namespace {

void remember(std::vector<std::string>& names, const std::string& name) {
    if (std::find(names.begin(), names.end(), name) == names.end()) {
        names.push_back(name);
    }
}

}  // namespace

Session::~Session() {
    // Loaded textures belong to the context's shared map and models to no one once the
    // effect is gone: both are removed by name, as the Java side removes them.
    for (const std::string& name : mTextures) {
        vi::Host::loadTexture(mSlot, name.c_str(), nullptr, 0, 0, 0);
    }
    for (const std::string& name : mModels) {
        vi::Host::loadModel(mSlot, name.c_str(), nullptr, 0);
    }
    vi::Host::destroy(mSlot);
}

// The host only logs what dlopen and dlsym say; asking them first gives the user one clear
// reason. A bare file name means this folder, not the loader's search path.
bool Session::isEffectLibrary(const std::string& path, std::string& error) {
    char absolute[PATH_MAX];
    if (realpath(path.c_str(), absolute) == nullptr) {
        error = path + ": no such effect library";
        return false;
    }
    void* library = dlopen(absolute, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        error = path + ": not a loadable library: " + dlerror();
        return false;
    }
    const bool hasCreateScene = dlsym(library, "createScene") != nullptr;
    dlclose(library);
    if (!hasCreateScene) {
        error = path + ": not an effect library: it exports no \"createScene\"";
    }
    return hasCreateScene;
}

bool Session::loadEffect(const std::string& path, std::string& error) {
    char absolute[PATH_MAX];
    if (!isEffectLibrary(path, error) || realpath(path.c_str(), absolute) == nullptr) {
        return false;
    }
    if (!vi::Host::loadEffect(mSlot, absolute, mResourceNames)) {
        error = path + ": its \"createScene\" made no effect";
        return false;
    }
    return true;
}

void Session::init(int width, int height) {
    mWidth = width;
    mHeight = height;
    vi::Host::init(mSlot, width, height, false);
}

void Session::loadTexture(const std::string& name, const Image& image) {
    std::vector<int32_t> argb(static_cast<size_t>(image.width) * image.height);
    for (size_t i = 0; i < argb.size(); ++i) {
        const uint8_t* p = &image.rgba[i * 4];
        argb[i] = static_cast<int32_t>(uint32_t(p[3]) << 24 | uint32_t(p[0]) << 16 |
                                       uint32_t(p[1]) << 8 | p[2]);
    }
    vi::Host::loadTexture(mSlot, name.c_str(), argb.data(), argb.size(), image.width, image.height);
    remember(mTextures, name);
}

void Session::loadModel(const std::string& name, const std::vector<unsigned char>& bytes) {
    vi::Host::loadModel(mSlot, name.c_str(), bytes.data(), bytes.size());
    remember(mModels, name);
}

void Session::touch(int x, int y, int action) {
    vi::Host::onTouch(mSlot, x, y, action);
}

void Session::showUnlock() {
    vi::Host::showUnlock(mSlot);
}

void Session::showAffordance(int x, int y) {
    vi::Host::showAffordance(mSlot, x, y);
}

void Session::clear() {
    vi::Host::clear(mSlot);
}

void Session::pause() {
    vi::Host::pauseAnimation();
    mPaused = true;
}

void Session::resume() {
    vi::Host::resumeAnimation();
    mPaused = false;
}

void Session::setParameter(int key, float value) {
    vi::Host::setParameters(mSlot, &key, &value, 1);
}

void Session::apply(const ScriptEvent& event) {
    const int x = event.x.pixels(mWidth);
    const int y = event.y.pixels(mHeight);
    switch (event.kind) {
        case ScriptEvent::Kind::Touch:
            touch(x, y, event.action);
            break;
        case ScriptEvent::Kind::Unlock:
            showUnlock();
            break;
        case ScriptEvent::Kind::Clear:
            clear();
            break;
        case ScriptEvent::Kind::Pause:
            pause();
            break;
        case ScriptEvent::Kind::Resume:
            resume();
            break;
        case ScriptEvent::Kind::Affordance:
            showAffordance(x, y);
            break;
        case ScriptEvent::Kind::Param:
            setParameter(event.key, event.value);
            break;
    }
}

bool Session::draw() {
    return vi::Host::draw(mSlot);
}

}  // namespace qam::preview
