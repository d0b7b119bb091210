#include "examples/common/Png.h"

#include <GLES2/gl2.h>
#include <png.h>

#include <cstdio>
#include <cstring>

namespace qam {

bool writePng(const std::string& path, const Image& image) {
    png_image png;
    memset(&png, 0, sizeof png);
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(image.width);
    png.height = static_cast<png_uint_32>(image.height);
    png.format = PNG_FORMAT_RGBA;
    if (!png_image_write_to_file(&png, path.c_str(), 0, image.rgba.data(), 0, nullptr)) {
        fprintf(stderr, "%s: cannot write PNG: %s\n", path.c_str(), png.message);
        return false;
    }
    return true;
}

bool readPng(const std::string& path, Image& image) {
    png_image png;
    memset(&png, 0, sizeof png);
    png.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&png, path.c_str())) {
        fprintf(stderr, "%s: not a readable PNG: %s\n", path.c_str(), png.message);
        return false;
    }
    png.format = PNG_FORMAT_RGBA;
    image.width = static_cast<int>(png.width);
    image.height = static_cast<int>(png.height);
    image.rgba.resize(PNG_IMAGE_SIZE(png));
    if (!png_image_finish_read(&png, nullptr, image.rgba.data(), 0, nullptr)) {
        fprintf(stderr, "%s: not a readable PNG: %s\n", path.c_str(), png.message);
        return false;
    }
    return true;
}

Image readFramebuffer(int width, int height) {
    Image image;
    image.width = width;
    image.height = height;
    std::vector<uint8_t> bottomUp(static_cast<size_t>(width) * height * 4);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, bottomUp.data());
    image.rgba.resize(bottomUp.size());
    const size_t row = static_cast<size_t>(width) * 4;
    for (int y = 0; y < height; ++y) {
        memcpy(&image.rgba[y * row], &bottomUp[(height - 1 - y) * row], row);
    }
    return image;
}

}  // namespace qam
