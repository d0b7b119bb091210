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

// Stores the size truncated to whole pixels. False, storing nothing, for a size no int holds
// (logged once for `object` under `caller`).
bool storeSurface(const void* object, float width, float height, const char* caller,
                  int& surfaceWidth, int& surfaceHeight);

}  // namespace qam
