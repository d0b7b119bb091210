#include "Kinetra/Layers/Implementation/BrushFields.h"

#include "Kinetra/Layers/Implementation/BrushParts.h"

namespace qam {

bool storeSurface(const void* object, float width, float height, const char* caller,
                  int& surfaceWidth, int& surfaceHeight) {
    if (!wholePixels(object, width, height, caller)) {
        return false;
    }
    surfaceWidth = static_cast<int>(width);
    surfaceHeight = static_cast<int>(height);
    return true;
}

}  // namespace qam
