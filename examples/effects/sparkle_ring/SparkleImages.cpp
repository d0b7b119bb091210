#include "examples/effects/sparkle_ring/SparkleImages.h"

#include <cmath>

namespace qam::samples {

SampleImage sparkleBand(int size) {
    return paint(size, size, [](float u, float v) {
        const float r = std::hypot(2 * u - 1, 2 * v - 1);
        const float d = (r - 0.8f) / 0.07f;
        const float band = std::exp(-d * d);
        return Rgba{band, 0, 0, band};
    });
}

SampleImage sparkleGlints(int size) {
    return paint(size, size, [size](float u, float v) {
        // Noise with one cell a texel: a value of its own for each.
        const float lit = tiledNoise(u, v, size, size, 41);
        return Rgba{0, 0, 0, lit > 0.72f ? 1.0f : 0.12f};
    });
}

SampleImage sparkleStar(int size) {
    return paint(size, size, [](float u, float v) {
        const float x = std::fabs(2 * u - 1);
        const float y = std::fabs(2 * v - 1);
        // Two thin crossed rays and a round core.
        const float rays =
            std::exp(-x * 9) * std::exp(-y * y * 300) + std::exp(-y * 9) * std::exp(-x * x * 300);
        const float core = std::exp(-(x * x + y * y) * 40);
        const float light =
            std::fmin(1.0f, rays + core) * (1 - smoothstep(0.8f, 1.0f, fmaxf(x, y)));
        return Rgba{light, light, light, light};
    });
}

SampleImage sparkleDark() {
    return paint(1, 1, [](float, float) { return Rgba{0, 0, 0, 1}; });
}

}  // namespace qam::samples
