#include "examples/effects/common/SampleImage.h"

#include <algorithm>
#include <cmath>

namespace qam::samples {
namespace {

uint8_t byteOf(float v) {
    return static_cast<uint8_t>(std::lround(std::clamp(v, 0.0f, 1.0f) * 255.0f));
}

// A repeatable value in 0..1 for one lattice point.
float lattice(int x, int y, unsigned seed) {
    unsigned h = static_cast<unsigned>(x) * 374761393u + static_cast<unsigned>(y) * 668265263u +
                 seed * 2246822519u;
    h = (h ^ (h >> 13)) * 1274126177u;
    h ^= h >> 16;
    return static_cast<float>(h & 0xFFFFu) / 65535.0f;
}

int wrap(int i, int period) {
    return ((i % period) + period) % period;
}

}  // namespace

SampleImage paint(int width, int height, const std::function<Rgba(float u, float v)>& at) {
    SampleImage image;
    image.width = width;
    image.height = height;
    image.rgba.reserve(static_cast<size_t>(width) * height * 4);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Rgba c = at((x + 0.5f) / width, (y + 0.5f) / height);
            image.rgba.insert(image.rgba.end(),
                              {byteOf(c.r), byteOf(c.g), byteOf(c.b), byteOf(c.a)});
        }
    }
    return image;
}

float smoothstep(float edge0, float edge1, float x) {
    const float t = std::clamp((x - edge0) / (edge1 - edge0), 0.0f, 1.0f);
    return t * t * (3.0f - 2.0f * t);
}

float tiledNoise(float u, float v, int periodX, int periodY, unsigned seed) {
    const float x = u * periodX;
    const float y = v * periodY;
    const int x0 = static_cast<int>(std::floor(x));
    const int y0 = static_cast<int>(std::floor(y));
    const float fx = smoothstep(0.0f, 1.0f, x - x0);
    const float fy = smoothstep(0.0f, 1.0f, y - y0);
    auto at = [&](int i, int j) {
        return lattice(wrap(x0 + i, periodX), wrap(y0 + j, periodY), seed);
    };
    const float bottom = at(0, 0) + (at(1, 0) - at(0, 0)) * fx;
    const float top = at(0, 1) + (at(1, 1) - at(0, 1)) * fx;
    return bottom + (top - bottom) * fy;
}

}  // namespace qam::samples
