#include "examples/effects/ripple/RippleImages.h"

#include <cmath>

namespace qam::samples {

SampleImage rippleFront(int size) {
    return paint(size, size, [](float u, float v) {
        const float d = (std::hypot(2 * u - 1, 2 * v - 1) - 0.8f) / 0.09f;
        const float front = std::exp(-d * d);
        return Rgba{front, front, front, front};
    });
}

SampleImage rippleWater(int size) {
    return paint(size, size, [](float u, float v) {
        return Rgba{1, 1, 1, 1 - smoothstep(0.55f, 0.95f, std::hypot(2 * u - 1, 2 * v - 1))};
    });
}

SampleImage rippleStill() {
    return paint(1, 1, [](float, float) { return Rgba{0.5f, 0.5f, 0.0f, 1.0f}; });
}

}  // namespace qam::samples
