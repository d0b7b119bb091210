#include "examples/preview/Resources.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

namespace qam::preview {
namespace {

bool exists(const std::string& path) {
    return std::ifstream(path).good();
}

}  // namespace

Image defaultBackground(int width, int height) {
    Image image;
    image.width = width;
    image.height = height;
    image.rgba.resize(static_cast<size_t>(width) * height * 4);
    for (int y = 0; y < height; ++y) {
        const float t = height > 1 ? static_cast<float>(y) / (height - 1) : 0.0f;
        const uint8_t row[4] = {static_cast<uint8_t>(28 + 60 * t),
                                static_cast<uint8_t>(34 + 20 * t),
                                static_cast<uint8_t>(72 + 40 * t), 255};
        for (int x = 0; x < width; ++x) {
            std::copy(row, row + 4, &image.rgba[(static_cast<size_t>(y) * width + x) * 4]);
        }
    }
    return image;
}

bool loadResources(Session& session, const Image& background, const std::string& folder) {
    session.loadTexture("bg", background);
    for (const std::string& name : session.resourceNames()) {
        if (name == "bg") {
            continue;
        }
        const std::string base = folder + "/" + name;
        Image image;
        if (exists(base + ".png")) {
            if (!readPng(base + ".png", image)) {
                return false;
            }
            session.loadTexture(name, image);
        } else if (exists(base + ".bin")) {
            std::ifstream file(base + ".bin", std::ios::binary);
            const std::vector<unsigned char> bytes{std::istreambuf_iterator<char>(file),
                                                   std::istreambuf_iterator<char>()};
            session.loadModel(name, bytes);
        } else {
            fprintf(stderr, "qam-preview: no %s.png or %s.bin in %s: resource \"%s\" not loaded\n",
                    name.c_str(), name.c_str(), folder.c_str(), name.c_str());
        }
    }
    return true;
}

}  // namespace qam::preview
