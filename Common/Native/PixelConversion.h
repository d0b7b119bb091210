#pragma once

// Java hands colours over as ARGB ints; GL wants R, G, B, A bytes. Each function swaps the
// lowest and third-lowest byte of every value in `pixels` (in place, as Java's array is left),
// sets the alpha byte when `opaque`, and copies the result to `rgba`. One pass: each value is
// read once and written twice. Inline so the tests compare the two paths as the library
// builds them.
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#include <unistd.h>
#elif defined(__ARM_NEON)
#include <arm_neon.h>
#endif

namespace qam::host {

// The reference, and the vector path's tail.
inline void argbToRgbaScalar(uint32_t* pixels, size_t count, bool opaque, uint32_t* rgba) {
    const uint32_t alpha = opaque ? 0xFF000000u : 0u;
    for (size_t i = 0; i < count; ++i) {
        const uint32_t v = pixels[i];
        const uint32_t swapped =
            (v & 0xFF00FF00u) | ((v >> 16) & 0xFFu) | ((v & 0xFFu) << 16) | alpha;
        pixels[i] = swapped;
        rgba[i] = swapped;
    }
}

// Streaming stores skip the cache, which pays only when the image and its copy would not fit
// in it anyway: below that they are slower than plain stores.
inline size_t streamingThreshold() {
#if defined(__SSE2__) && defined(_SC_LEVEL3_CACHE_SIZE)
    static const size_t bytes = [] {
        const long cache = sysconf(_SC_LEVEL3_CACHE_SIZE);
        return cache > 0 ? static_cast<size_t>(cache) / 2 : size_t{16} << 20;
    }();
    return bytes;
#else
    return SIZE_MAX;
#endif
}

// Four values at a time where the machine has vectors, `rgba` at any alignment. The copy is
// streamed when it is larger than `streamAbove` bytes.
inline void argbToRgba(uint32_t* pixels, size_t count, bool opaque, void* rgba,
                       [[maybe_unused]] size_t streamAbove = streamingThreshold()) {
    auto* out = static_cast<uint32_t*>(rgba);
    size_t i = 0;
#if defined(__SSE2__)
    const __m128i keep = _mm_set1_epi32(static_cast<int>(0xFF00FF00u));
    const __m128i lowByte = _mm_set1_epi32(0xFF);
    const __m128i alphaBits = _mm_set1_epi32(static_cast<int>(opaque ? 0xFF000000u : 0u));
    const bool streamOut =
        (reinterpret_cast<uintptr_t>(out) & 15) == 0 && count * sizeof *out > streamAbove;
    for (; i + 4 <= count; i += 4) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels + i));
        const __m128i red = _mm_and_si128(_mm_srli_epi32(v, 16), lowByte);
        const __m128i blue = _mm_slli_epi32(_mm_and_si128(v, lowByte), 16);
        const __m128i swapped =
            _mm_or_si128(_mm_or_si128(_mm_and_si128(v, keep), alphaBits), _mm_or_si128(red, blue));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(pixels + i), swapped);
        if (streamOut) {
            _mm_stream_si128(reinterpret_cast<__m128i*>(out + i), swapped);
        } else {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), swapped);
        }
    }
    if (streamOut) {
        _mm_sfence();
    }
#elif defined(__ARM_NEON)
    const uint32x4_t keep = vdupq_n_u32(0xFF00FF00u);
    const uint32x4_t lowByte = vdupq_n_u32(0xFFu);
    const uint32x4_t alphaBits = vdupq_n_u32(opaque ? 0xFF000000u : 0u);
    for (; i + 4 <= count; i += 4) {
        const uint32x4_t v = vld1q_u32(pixels + i);
        const uint32x4_t red = vandq_u32(vshrq_n_u32(v, 16), lowByte);
        const uint32x4_t blue = vshlq_n_u32(vandq_u32(v, lowByte), 16);
        const uint32x4_t swapped =
            vorrq_u32(vorrq_u32(vandq_u32(v, keep), alphaBits), vorrq_u32(red, blue));
        vst1q_u32(pixels + i, swapped);
        vst1q_u32(out + i, swapped);
    }
#endif
    argbToRgbaScalar(pixels + i, count - i, opaque, out + i);
}

}  // namespace qam::host
