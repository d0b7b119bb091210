#include "examples/effects/watercolour/WatercolourImages.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace qam::samples {
namespace {

constexpr float kTwoPi = 6.28318531f;

// Ultramarine, rose madder, gamboge, viridian.
const Rgba kPigments[4] = {{0.17f, 0.27f, 0.66f, 1.0f},
                           {0.80f, 0.22f, 0.39f, 1.0f},
                           {0.93f, 0.66f, 0.13f, 1.0f},
                           {0.09f, 0.52f, 0.47f, 1.0f}};

}  // namespace

SampleImage watercolourBlot(int size) {
    return paint(size, size, [](float u, float v) {
        const float x = 2 * u - 1;
        const float y = 2 * v - 1;
        const float angle = std::atan2(y, x) / kTwoPi + 0.5f;
        // The edge wanders by a few per cent around the circle.
        const float edge = 0.86f + 0.12f * (tiledNoise(angle, 0.5f, 7, 1, 11) - 0.5f);
        const float r = std::sqrt(x * x + y * y);
        return Rgba{1, 1, 1, 1 - smoothstep(0.45f * edge, edge, r)};
    });
}

SampleImage watercolourWash(int size) {
    return paint(size, size, [](float u, float v) {
        const float r = std::hypot(2 * u - 1, 2 * v - 1);
        return Rgba{1, 1, 1, 1 - smoothstep(0.3f, 1.0f, r)};
    });
}

SampleImage watercolourPigments(int width, int height) {
    return paint(width, height, [](float u, float v) {
        float weights[4];
        float total = 0;
        for (int i = 0; i < 4; ++i) {
            const float n = tiledNoise(u, v * 1.6f, 2, 3, 23 + i);
            weights[i] = n * n * n * n;
            total += weights[i];
        }
        Rgba c{0, 0, 0, 1};
        for (int i = 0; i < 4; ++i) {
            c.r += kPigments[i].r * weights[i] / total;
            c.g += kPigments[i].g * weights[i] / total;
            c.b += kPigments[i].b * weights[i] / total;
        }
        return c;
    });
}

SampleImage watercolourFlow(int size) {
    // The stream function on a grid, then its curl by central differences.
    std::vector<float> psi(static_cast<size_t>(size) * size);
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const float u = (x + 0.5f) / size;
            const float v = (y + 0.5f) / size;
            psi[y * size + x] = tiledNoise(u, v, 4, 4, 5) + 0.5f * tiledNoise(u, v, 8, 8, 6);
        }
    }
    auto at = [&](int x, int y) { return psi[((y + size) % size) * size + (x + size) % size]; };
    std::vector<float> vx(psi.size());
    std::vector<float> vy(psi.size());
    float largest = 1e-6f;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            vx[y * size + x] = at(x, y + 1) - at(x, y - 1);
            vy[y * size + x] = at(x - 1, y) - at(x + 1, y);
            largest = std::max({largest, std::fabs(vx[y * size + x]), std::fabs(vy[y * size + x])});
        }
    }
    return paint(size, size, [&](float u, float v) {
        const int i = std::min(static_cast<int>(v * size), size - 1) * size +
                      std::min(static_cast<int>(u * size), size - 1);
        return Rgba{0.5f + 0.5f * vx[i] / largest, 0.5f + 0.5f * vy[i] / largest, 1, 1};
    });
}

}  // namespace qam::samples
