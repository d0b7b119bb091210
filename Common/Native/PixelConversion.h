#pragma once

#include <cstddef>
#include <cstdint>

namespace qam::host {

// Java hands colours over as ARGB ints; GL wants R, G, B, A bytes. Swaps the lowest and
// third-lowest byte of every value in `pixels` (in place, as Java's array is left), sets the
// alpha byte when `opaque`, and copies the result to `rgba`.
void argbToRgba(uint32_t* pixels, size_t count, bool opaque, void* rgba);

}  // namespace qam::host
