#include "Common/Native/PixelConversion.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

// The ARM builds take the NEON paths of the pixel conversion and the matrix product.
#if (defined(__arm__) || defined(__aarch64__)) && !defined(__ARM_NEON)
#error "ARM builds need NEON"
#endif

namespace {

using qam::host::argbToRgba;
using qam::host::argbToRgbaScalar;

// Opaque or not, and above how many bytes the copy is streamed.
const std::pair<bool, size_t> kCopies[] = {{false, 0}, {true, 0}, {false, SIZE_MAX}};

// The vector path against the scalar one on the same values: every length up to three vectors
// and a tail, Java's array and the copy each at every 4-byte offset in 16 bytes, the copy
// streamed or stored. The arrays run on past `count`, so a write beyond it shows too.
TEST(PixelConversionTest, VectorPathMatchesTheScalarOneForEveryTailAndAlignment) {
    std::mt19937 random(7);
    for (size_t count = 0; count < 16; ++count) {
        for (size_t in = 0; in < 4; ++in) {
            for (size_t out = 0; out < 4; ++out) {
                for (auto [opaque, streamAbove] : kCopies) {
                    std::vector<uint32_t> pixels(count + 8), copy(count + 8);
                    for (uint32_t& value : pixels) {
                        value = static_cast<uint32_t>(random());
                    }
                    for (uint32_t& value : copy) {
                        value = static_cast<uint32_t>(random());
                    }
                    std::vector<uint32_t> expectedPixels = pixels, expectedCopy = copy;
                    argbToRgba(pixels.data() + in, count, opaque, copy.data() + out, streamAbove);
                    argbToRgbaScalar(expectedPixels.data() + in, count, opaque,
                                     expectedCopy.data() + out);
                    ASSERT_EQ(pixels, expectedPixels) << count << " " << in << " " << out;
                    ASSERT_EQ(copy, expectedCopy) << count << " " << in << " " << out;
                }
            }
        }
    }
}

}  // namespace
