#pragma once

namespace Kinetra {

// Sixteen values in OpenGL's column-major order: element [i][j] is m[4 * i + j], so [i] is
// column i and [3][0..2] the translation. Handed to glUniformMatrix4fv untransposed.
template <typename T>
struct KNMatrix4x4 {
    // Plain floats of natural alignment: the classes that hold matrices are laid out for
    // effect libraries built elsewhere, so the vector code loads and stores unaligned.
    T m[16]{};

    T* operator[](int i) { return m + 4 * i; }
    const T* operator[](int i) const { return m + 4 * i; }
    T* data() { return m; }
    const T* data() const { return m; }
};

}  // namespace Kinetra
