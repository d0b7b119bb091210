#pragma once

#include <cstddef>

namespace qam {

// Bodies the layers' setters share; each layer keeps its own fields.

// Stores the values into `to`, one each.
template <std::size_t N, typename... Values>
void storeFloats(float (&to)[N], Values... values) {
    static_assert(sizeof...(Values) == N, "one value per element");
    const float from[N] = {static_cast<float>(values)...};
    for (std::size_t i = 0; i < N; ++i) {
        to[i] = from[i];
    }
}

// Stores a usable surface size as whole pixels; false (logged under `caller`) for any other.
bool storeSurface(float width, float height, const char* caller, int& surfaceWidth,
                  int& surfaceHeight);

// Looks `name` up in the texture manager into `texture`; a null name is logged under `caller`
// and leaves `texture` as it was (false).
bool textureByName(const char* name, const char* caller, unsigned int& texture);

}  // namespace qam
