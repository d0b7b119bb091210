#pragma once

#include <cstdint>

namespace Kinetra {

// One CPU-side image: what KNTextureManager keeps under a name and uploads with
// generateTexture. The pixels come from malloc; whoever uploads them frees them.
struct _TEXTURE_COLOR_BUFFER {
    int32_t width;
    int32_t height;
    unsigned char* pixels;  // width * height * channels bytes, owned
    char name[128];         // NUL-terminated
    int32_t size;           // byte count of pixels
    int32_t channels;       // 3 uploads as GL_RGB, anything else as GL_RGBA
};

}  // namespace Kinetra
