#include <cstdlib>
#include <cstring>

#include "Common/Native/Host.h"
#include "Common/Native/HostLock.h"
#include "Common/Native/InstanceEntry.h"
#include "Common/Native/PixelConversion.h"
#include "Common/Platform/Log.h"
#include "Common/Renderer/Base/ModelObject.h"
#include "Common/Renderer/Base/Texture.h"

namespace vi {

using namespace qam::host;

namespace {

// Swaps new pixels into a texture that already exists under the name.
void replacePixels(Effect& effect, Texture& texture, void* buffer, int width, int height) {
    if (texture.mIsDeletable) {
        free(texture.mBuffer);
    }
    texture.mIsUploaded = false;
    texture.mBuffer = buffer;
    texture.mWidth = static_cast<unsigned>(width);
    texture.mHeight = static_cast<unsigned>(height);
    texture.mSize = glm::vec2(float(width), float(height));
    texture.mTexelSize = glm::vec2(1.0f / float(width), 1.0f / float(height));
    if (texture.mTexture != 0) {
        texture.update();
    }
    if (effect.mIsReady) {
        effect.onTextureChanged();
    }
}

}  // namespace

void Host::loadTexture(EffectSlot& slot, const char* name, int32_t* pixels, size_t pixelCount,
                       int width, int height) {
    HostLock lock;
    Effect& effect = effectOrPending(slot.get());
    // Undefined input only: a name the map cannot hold, or a size whose pixels the array does
    // not have (a negative size makes the byte count negative or wrap). 0 x 0 is a texture.
    if (name == nullptr) {
        qam::logErrorOnce(&effect, "loadTexture: no texture name, ignored");
        return;
    }
    if (pixels != nullptr && (width < 0 || height < 0)) {
        qam::logErrorOnce(&effect, "loadTexture: '%s' has size %dx%d, ignored", name, width,
                          height);
        return;
    }
    const size_t texels = static_cast<size_t>(width) * static_cast<size_t>(height);
    if (pixels != nullptr && pixelCount < texels) {
        qam::logErrorOnce(&effect, "loadTexture: '%s' has %zu pixels for %dx%d, ignored", name,
                          pixelCount, width, height);
        return;
    }
    enterInstanceAndNotify(effect);
    Texture*& entry = (*effect.mTextures)[name];
    if (pixels == nullptr) {
        forgetSharedTexture(entry);  // other instances and the pending holder may list it too
        delete entry;
        entry = nullptr;  // the name stays, with no texture
        return;
    }
    void* buffer = malloc(texels * 4);
    if (buffer == nullptr && texels > 0) {
        qam::logErrorOnce(&effect, "loadTexture: no memory for '%s' (%dx%d)", name, width, height);
        return;
    }
    argbToRgba(reinterpret_cast<uint32_t*>(pixels), texels, strcmp(name, "bg") == 0, buffer);
    if (entry == nullptr) {
        entry = new Texture(buffer, static_cast<unsigned>(width), static_cast<unsigned>(height),
                            true, true, false, true, false, 4, false);
        entry->setDeletable(true);
    } else {
        replacePixels(effect, *entry, buffer, width, height);
    }
}

void Host::loadModel(EffectSlot& slot, const char* name, const void* data, size_t length) {
    HostLock lock;
    Effect& effect = effectOrPending(slot.get());
    if (name == nullptr) {  // the map cannot hold it
        qam::logErrorOnce(&effect, "loadModel: no model name, ignored");
        return;
    }
    ModelObject*& entry = effect.mModels[name];
    delete entry;
    // A removed model keeps its name with no model, so a later load does not free it twice.
    entry = nullptr;
    if (data == nullptr) {
        return;
    }
    entry = new ModelObject();
    entry->setBuffer(data, static_cast<unsigned>(length));
}

}  // namespace vi
