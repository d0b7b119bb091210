#pragma once

namespace Kinetra {

// Plain (x, y) value: the grid's resolution and dimension, layer offsets.
template <typename T>
struct KNVector2D {
    T x{};
    T y{};
};

// Plain (x, y, z) value: mesh positions and texture coordinates (z = 0), camera vectors.
// Mesh arrays of these go to GL as packed floats, so no padding is allowed.
template <typename T>
struct KNVector3D {
    T x{};
    T y{};
    T z{};
};

static_assert(sizeof(KNVector3D<float>) == 3 * sizeof(float), "mesh arrays are packed");

}  // namespace Kinetra
