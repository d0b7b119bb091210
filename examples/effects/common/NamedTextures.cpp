#include "examples/effects/common/NamedTextures.h"

#include <utility>

#include "Kinetra/Core/KNTextureManager.h"

namespace qam::samples {

using Kinetra::KNTextureManager;

NamedTextures::~NamedTextures() {
    if (!mUploaded) {
        return;
    }
    for (const Entry& entry : mEntries) {
        KNTextureManager::getInstancePtr()->deleteTexture(entry.name.c_str());
    }
}

void NamedTextures::add(const char* name, SampleImage image, unsigned wrap, unsigned filter) {
    mEntries.push_back({name, std::move(image), wrap, filter});
}

void NamedTextures::upload() {
    KNTextureManager* manager = KNTextureManager::getInstancePtr();
    for (Entry& entry : mEntries) {
        manager->setTextureWrapOption(entry.wrap);
        manager->setTextureMagFilterOption(entry.filter);
        manager->setTexture(entry.name.c_str(), entry.image.rgba.data(), entry.image.width,
                            entry.image.height);
    }
    mUploaded = true;
}

void NamedTextures::contextChanged() {
    KNTextureManager::getInstancePtr()->contextChanged();
}

unsigned NamedTextures::id(const char* name) const {
    return KNTextureManager::getInstancePtr()->getTextureID(name);
}

}  // namespace qam::samples
