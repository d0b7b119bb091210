#pragma once

#include <GLES2/gl2.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Kinetra/Core/KNFBO.h"

namespace qam::test {

// Layer shaders run at mediump, which llvmpipe evaluates in single precision; inputs and
// targets are 8-bit, so two steps cover the rounding of a texel fetch and of the write.
inline constexpr int kLayerTolerance = 2;

using Texel = std::array<uint8_t, 4>;  // r, g, b, a

// width x height RGBA bytes, row 0 first (row 0 is v = 0, the bottom of a drawn texture).
std::vector<uint8_t> texels(int width, int height, const std::function<Texel(int x, int y)>& at);

// A 2-D texture owned by the test, deleted with it unless forgotten.
class LayerTexture {
  public:
    LayerTexture(int width, int height, const std::vector<uint8_t>& rgba,
                 GLenum filter = GL_NEAREST);
    // One colour over a small texture.
    explicit LayerTexture(Texel colour);
    ~LayerTexture();
    LayerTexture(const LayerTexture&) = delete;
    LayerTexture& operator=(const LayerTexture&) = delete;

    GLuint id() const { return mId; }
    // The context that owned it is gone: nothing to delete any more.
    void forget() { mId = 0; }

  private:
    GLuint mId = 0;
};

// Uploads width x height RGBA bytes through KNTextureManager under `name`, with nearest
// filtering, for the layers' by-name setters; returns the texture's id.
unsigned int namedTexture(const char* name, int width, int height, std::vector<uint8_t> rgba);
// One colour over a 1 x 1 texture.
unsigned int namedTexture(const char* name, Texel colour);

// A KNFBO of width x height, created, bound with its viewport and cleared to `clear`.
std::unique_ptr<Kinetra::KNFBO> boundTarget(int width, int height, Texel clear = {0, 0, 0, 0});

// 255 · v rounded, v clamped to 0..1: the byte a target stores for a shader's value.
int byteOf(double v);
// Byte to shader value.
inline double unit(int byte) {
    return byte / 255.0;
}

// The directory the layer frames go to, made when missing.
std::string layerFramesDirectory();
// Writes the bound framebuffer's width x height pixels to <directory>/<className>.png and
// returns the path, or an empty string when it could not be written.
std::string writeLayerFrame(const std::string& className, int width, int height);

// The size of the frames left for a person to look at: a portrait phone screen.
inline constexpr int kFrameWidth = 1080;
inline constexpr int kFrameHeight = 1920;

// writeLayerFrame, then a check that the file reads back as the framebuffer's pixels.
::testing::AssertionResult leaveLayerFrame(const std::string& className, int width, int height);

}  // namespace qam::test
