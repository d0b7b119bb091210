#include "Kinetra/Layers/Implementation/BrushFields.h"

#include "Common/Platform/Log.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "Kinetra/Layers/Implementation/BrushParts.h"

namespace qam {

bool storeSurface(float width, float height, const char* caller, int& surfaceWidth,
                  int& surfaceHeight) {
    if (!usableSurface(width, height, caller)) {
        return false;
    }
    surfaceWidth = static_cast<int>(width);
    surfaceHeight = static_cast<int>(height);
    return true;
}

bool textureByName(const char* name, const char* caller, unsigned int& texture) {
    if (name == nullptr) {
        logError("%s: null name, texture kept", caller);
        return false;
    }
    texture = Kinetra::KNTextureManager::getInstancePtr()->getTextureID(name);
    return true;
}

}  // namespace qam
