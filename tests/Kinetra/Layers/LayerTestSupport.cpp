#include "tests/Kinetra/Layers/LayerTestSupport.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "Kinetra/Core/KNTextureManager.h"
#include "examples/common/Png.h"

namespace qam::test {

std::vector<uint8_t> texels(int width, int height, const std::function<Texel(int x, int y)>& at) {
    std::vector<uint8_t> rgba(static_cast<size_t>(width) * height * 4);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Texel t = at(x, y);
            std::copy(t.begin(), t.end(), &rgba[(static_cast<size_t>(y) * width + x) * 4]);
        }
    }
    return rgba;
}

LayerTexture::LayerTexture(int width, int height, const std::vector<uint8_t>& rgba, GLenum filter) {
    glGenTextures(1, &mId);
    glBindTexture(GL_TEXTURE_2D, mId);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, static_cast<GLint>(filter));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, static_cast<GLint>(filter));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 rgba.data());
}

LayerTexture::LayerTexture(Texel colour)
    : LayerTexture(4, 4, texels(4, 4, [&](int, int) { return colour; })) {}

LayerTexture::~LayerTexture() {
    if (mId != 0) {
        glDeleteTextures(1, &mId);
    }
}

unsigned int namedTexture(const char* name, int width, int height, std::vector<uint8_t> rgba) {
    Kinetra::KNTextureManager* textures = Kinetra::KNTextureManager::getInstancePtr();
    textures->setTextureMagFilterOption(GL_NEAREST);
    return textures->setTexture(name, rgba.data(), width, height);
}

unsigned int namedTexture(const char* name, Texel colour) {
    return namedTexture(name, 1, 1, std::vector<uint8_t>(colour.begin(), colour.end()));
}

std::unique_ptr<Kinetra::KNFBO> boundTarget(int width, int height, Texel clear) {
    auto target = std::make_unique<Kinetra::KNFBO>();
    target->setClearColor(static_cast<float>(unit(clear[0])), static_cast<float>(unit(clear[1])),
                          static_cast<float>(unit(clear[2])), static_cast<float>(unit(clear[3])));
    target->createFBOSurface(width, height);
    target->bindFBOSurface();
    return target;
}

int byteOf(double v) {
    return static_cast<int>(std::lround(std::clamp(v, 0.0, 1.0) * 255.0));
}

std::string layerFramesDirectory() {
    std::filesystem::create_directories(LAYER_FRAMES_DIR);
    return LAYER_FRAMES_DIR;
}

std::string writeLayerFrame(const std::string& className, int width, int height) {
    const std::string path = layerFramesDirectory() + "/" + className + ".png";
    return writePng(path, readFramebuffer(width, height)) ? path : std::string();
}

::testing::AssertionResult leaveLayerFrame(const std::string& className, int width, int height) {
    const std::string path = writeLayerFrame(className, width, height);
    if (path.empty()) {
        return ::testing::AssertionFailure() << "no frame written for " << className;
    }
    Image image;
    if (!readPng(path, image)) {
        return ::testing::AssertionFailure() << path << " does not read back";
    }
    if (image.width != width || image.height != height ||
        image.rgba != readFramebuffer(width, height).rgba) {
        return ::testing::AssertionFailure() << path << " differs from the framebuffer";
    }
    return ::testing::AssertionSuccess();
}

}  // namespace qam::test
