#pragma once

#include <GLES2/gl2.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Kinetra/Core/KNFBO.h"
#include "Kinetra/Core/KNShaderManager.h"
#include "Kinetra/Core/KNVector.h"
#include "tests/support/GLTest.h"

namespace qam::test {

// Layer shaders run at mediump, which llvmpipe evaluates in single precision; inputs and
// targets are 8-bit, so two steps cover the rounding of a texel fetch and of the write.
inline constexpr int kLayerTolerance = 2;

// The id a layer holds for a texture nobody has handed in yet.
inline constexpr unsigned int kUnset = 0xFFFFFFFFu;

// The size of the frames left for a person to look at: a portrait phone screen.
inline constexpr int kFrameWidth = 1080;
inline constexpr int kFrameHeight = 1920;

using Texel = std::array<uint8_t, 4>;  // r, g, b, a

constexpr uint32_t rgba(int r, int g, int b, int a) {
    return static_cast<uint32_t>(r) << 24 | static_cast<uint32_t>(g) << 16 |
           static_cast<uint32_t>(b) << 8 | static_cast<uint32_t>(a);
}

// width x height RGBA bytes, row 0 first (row 0 is v = 0, the bottom of a drawn texture).
std::vector<uint8_t> texels(int width, int height, const std::function<Texel(int x, int y)>& at);

// 64 x 64 red ramp across the columns, 4 · x, opaque: linearly filtered at u it reads
// 256 u - 2.
std::vector<uint8_t> redRamp();
// 128 x 128 white disc of coverage 1 within 0.4 of the centre, fading to 0 at 0.47.
std::vector<uint8_t> disc();

// A 2-D texture owned by the test, deleted with it unless forgotten.
class LayerTexture {
  public:
    LayerTexture(int width, int height, const std::vector<uint8_t>& rgba,
                 GLenum filter = GL_NEAREST);
    // Texel by texel.
    LayerTexture(int width, int height, const std::function<Texel(int x, int y)>& at,
                 GLenum filter = GL_NEAREST)
        : LayerTexture(width, height, texels(width, height, at), filter) {}
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
// A 96 x 64 background registered as "bg", linearly filtered: red 60, green up the rows
// (4 · row, read at v as 256 v - 2), blue 200.
void registerBackground();

// A KNFBO of width x height, created, bound with its viewport and cleared to `clear`.
std::unique_ptr<Kinetra::KNFBO> boundTarget(int width, int height, Texel clear = {0, 0, 0, 0});

// The framebuffer bound when made and its viewport, bound again by restore().
class SavedTarget {
  public:
    SavedTarget();
    void restore() const;

  private:
    GLint mFramebuffer = 0;
    GLint mViewport[4] = {};
};

// 255 · v rounded, v clamped to 0..1: the byte a target stores for a shader's value.
int byteOf(double v);
// Byte to shader value.
inline double unit(int byte) {
    return byte / 255.0;
}

// Each entry's x and y, and z 0.
void expectPoints(const std::vector<Kinetra::KNVector3D<float>>& actual,
                  std::initializer_list<std::pair<float, float>> expected);

// The texture bound to `unit` as GL reports it.
GLuint boundTexture(GLenum unit);
float uniformFloat(GLuint program, const char* name);

// The n-th uniform slot of `shader` is the location of the n-th name.
void expectUniformSlots(Kinetra::KNShaderManager& shader, std::initializer_list<const char*> names);

struct Sampler {
    const char* name;
    GLuint texture;
};
// The n-th sampler reads unit n, which holds its texture.
void expectSamplers(GLuint program, std::initializer_list<Sampler> samplers);

// Runs the calls in turn; each logs exactly one error line.
void expectOneLogLineEach(std::initializer_list<std::function<void()>> calls);

// Writes the bound framebuffer's width x height pixels to <frames>/<className>.png, then
// checks that the file reads back as the framebuffer's pixels.
::testing::AssertionResult leaveLayerFrame(const std::string& className, int width, int height);

// A GL test that starts and ends with no texture manager left over from another test.
class LayerTest : public GLTest {
  protected:
    void SetUp() override;
    void TearDown() override;
};

// A LayerTest that draws into a target of its own, of the fixture's size, cleared to
// transparent black.
class TargetLayerTest : public LayerTest {
  protected:
    void SetUp() override;
    std::unique_ptr<Kinetra::KNFBO> mTarget;
};

}  // namespace qam::test
