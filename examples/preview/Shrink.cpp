#include "examples/preview/Shrink.h"

namespace qam::preview {

Image shrink(const Image& image, int factor) {
    if (factor <= 1) {
        return image;
    }
    Image small;
    small.width = image.width / factor;
    small.height = image.height / factor;
    small.rgba.resize(static_cast<size_t>(small.width) * small.height * 4);
    const unsigned area = static_cast<unsigned>(factor * factor);
    for (int y = 0; y < small.height; ++y) {
        for (int x = 0; x < small.width; ++x) {
            unsigned sum[4] = {0, 0, 0, 0};
            for (int dy = 0; dy < factor; ++dy) {
                const uint8_t* p =
                    &image.rgba[((static_cast<size_t>(y) * factor + dy) * image.width +
                                 static_cast<size_t>(x) * factor) *
                                4];
                for (int dx = 0; dx < factor * 4; ++dx) {
                    sum[dx % 4] += p[dx];
                }
            }
            uint8_t* out = &small.rgba[(static_cast<size_t>(y) * small.width + x) * 4];
            for (int c = 0; c < 4; ++c) {
                out[c] = static_cast<uint8_t>((sum[c] + area / 2) / area);
            }
        }
    }
    return small;
}

}  // namespace qam::preview
