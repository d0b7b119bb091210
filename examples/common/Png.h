#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qam {

// An 8-bit RGBA image, top row first.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgba;
};

// Writes `image` as a PNG; false (with a message on stderr) when the file can't be written.
bool writePng(const std::string& path, const Image& image);
// Reads any PNG as RGBA; false (with a message on stderr) when it can't be read.
bool readPng(const std::string& path, Image& image);

// The bound framebuffer's pixels (GL's bottom-up rows) as a top-down image.
Image readFramebuffer(int width, int height);

}  // namespace qam
