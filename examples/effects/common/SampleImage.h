#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace qam::samples {

// An 8-bit RGBA image made in code, row 0 first (the bottom row of a texture drawn upright).
struct SampleImage {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgba;
};

// Colour components from 0 to 1.
struct Rgba {
    float r, g, b, a;
};

// width x height texels, each from `at` given the texel centre in 0..1 on both axes.
SampleImage paint(int width, int height, const std::function<Rgba(float u, float v)>& at);

// 0 below `edge0`, 1 above `edge1`, smooth between.
float smoothstep(float edge0, float edge1, float x);
// Smooth value noise in 0..1 with whole-number periods, so that it tiles: `periodX` cells
// across u in 0..1, `periodY` up v.
float tiledNoise(float u, float v, int periodX, int periodY, unsigned seed);

}  // namespace qam::samples
