#pragma once

#include <GLES2/gl2.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "Kinetra/Core/KNFBO.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "Kinetra/Layers/KNDrawAdvectColorBrush.h"
#include "Kinetra/Layers/KNDrawBGAdvectColorBrush.h"
#include "Kinetra/Layers/KNDrawBGAdvectWaterBrush.h"
#include "Kinetra/Layers/KNDrawBrilliantAdvect.h"
#include "Kinetra/Layers/KNDrawBrilliantRadial.h"
#include "Kinetra/Layers/KNDrawBrilliantRing.h"
#include "Kinetra/Layers/KNDrawMixColorBrush.h"
#include "Kinetra/Layers/KNDrawMixWaterBrush.h"
#include "Kinetra/Layers/KNDrawRadialColorBrush.h"
#include "Kinetra/Layers/KNDrawRadialColorBrushColor.h"
#include "Kinetra/Layers/KNDrawRadialWaterBrush.h"
#include "tests/support/GLTest.h"

namespace qam::test {

// Layer shaders run at mediump, which llvmpipe evaluates in single precision; inputs and
// targets are 8-bit, so two steps cover the rounding of a texel fetch and of the write.
inline constexpr int kLayerTolerance = 2;
// The id a layer holds for a texture nobody has handed in yet.
inline constexpr unsigned int kUnset = 0xFFFFFFFFu;

using Texel = std::array<uint8_t, 4>;  // r, g, b, a
using TexelAt = std::function<Texel(int x, int y)>;

// The byte a target stores for a shader's value: 255 · v rounded, v clamped to 0..1.
inline const auto near = [](double v) { return static_cast<int>(std::lround(v)); };
inline const auto byteOf = [](double v) { return near(std::clamp(v, 0.0, 1.0) * 255.0); };
inline const auto byte = [](double v) { return static_cast<uint8_t>(byteOf(v)); };
inline const auto unit = [](int byte) { return byte / 255.0; };
// A texel from bytes, each clamped to 0..255.
inline const auto texel = [](int r, int g, int b, int a) {
    return Texel{byte(unit(r)), byte(unit(g)), byte(unit(b)), byte(unit(a))};
};

// width x height RGBA bytes, row 0 first (row 0 is v = 0, the bottom of a drawn texture).
inline std::vector<uint8_t> texels(int width, int height, const TexelAt& at) {
    std::vector<uint8_t> rgba;
    for (int i = 0; i < width * height; ++i) {
        const Texel t = at(i % width, i / width);
        rgba.insert(rgba.end(), t.begin(), t.end());
    }
    return rgba;
}

inline void clearTo(Texel c) {
    glClearColor(unit(c[0]), unit(c[1]), unit(c[2]), unit(c[3]));
    glClear(GL_COLOR_BUFFER_BIT);
}

// What a scenario draws from, `w` x `h`: textures and targets that live as long as it does.
class Inputs {
  public:
    explicit Inputs(int width = 64, int height = 64) : w(width), h(height) {}
    ~Inputs() { glDeleteTextures(static_cast<GLsizei>(mTextures.size()), mTextures.data()); }
    Inputs(const Inputs&) = delete;
    GLuint operator()(int width, int height, const std::vector<uint8_t>& rgba,
                      GLenum filter = GL_NEAREST, GLenum type = GL_UNSIGNED_BYTE) {
        GLuint id = 0;
        glGenTextures(1, &id);
        mTextures.push_back(id);
        glBindTexture(GL_TEXTURE_2D, id);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, static_cast<GLint>(filter));
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, static_cast<GLint>(filter));
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, type, rgba.data());
        return id;
    }
    GLuint operator()(int width, int height, const TexelAt& at, GLenum filter = GL_NEAREST) {
        return (*this)(width, height, texels(width, height, at), filter);
    }
    // One colour over a small texture.
    GLuint operator()(Texel c) {
        return (*this)(4, 4, [=](int, int) { return c; });
    }
    // One value over a float texture sampled nearest: 0.5 survives exactly.
    GLuint floats(std::array<float, 4> v) {
        const auto* bytes = reinterpret_cast<const uint8_t*>(v.data());
        return (*this)(1, 1, {bytes, bytes + sizeof v}, GL_NEAREST, GL_FLOAT);
    }
    // A target of its own, bound with its viewport and cleared to `c`.
    Kinetra::KNFBO& target(int width, int height, Texel c = {0, 0, 0, 0}) {
        Kinetra::KNFBO& target = *mTargets.emplace_back(std::make_unique<Kinetra::KNFBO>());
        target.setClearColor(unit(c[0]), unit(c[1]), unit(c[2]), unit(c[3]));
        target.createFBOSurface(width, height);
        target.bindFBOSurface();
        return target;
    }

    const int w, h;

  private:
    std::vector<GLuint> mTextures;
    std::vector<std::unique_ptr<Kinetra::KNFBO>> mTargets;
};

// Centres a brush's w x h quad on (x, y).
template <typename Brush>
void place(Brush& brush, float w, float h, float x, float y) {
    brush.setRectAlign(1);
    brush.setSize(w, h);
    brush.setPosition(x, y, 0);
}

// Uploads RGBA bytes through KNTextureManager under `name`, filtered nearest or linearly.
inline unsigned int namedTexture(const char* name, int width, int height, std::vector<uint8_t> rgba,
                                 bool linear = false) {
    Kinetra::KNTextureManager* textures = Kinetra::KNTextureManager::getInstancePtr();
    textures->setTextureMagFilterOption(linear ? GL_LINEAR : GL_NEAREST);
    return textures->setTexture(name, rgba.data(), width, height);
}
inline unsigned int namedTexture(const char* name, Texel c) {
    return namedTexture(name, 1, 1, {c.begin(), c.end()});
}

// One pixel of the bound framebuffer worked out by hand: r, g, b, a, -1 for "any".
struct Probe {
    int x, y;
    std::array<int, 4> rgba;
    int tolerance = kLayerTolerance;
};
inline void expectProbes(const std::vector<Probe>& probes) {
    for (const Probe& p : probes) {
        uint8_t b[4] = {};
        glReadPixels(p.x, p.y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, b);
        for (int c = 0; c < 4; ++c) {
            if (p.rgba[c] >= 0) {
                EXPECT_NEAR(b[c], p.rgba[c], p.tolerance)
                    << "rgba"[c] << " at (" << p.x << ", " << p.y << ")";
            }
        }
    }
}

// A GL test that starts and ends with no texture manager left over from another test.
class LayerTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        Kinetra::KNTextureManager::ReleaseInstance();
    }
    void TearDown() override { Kinetra::KNTextureManager::ReleaseInstance(); }
};

}  // namespace qam::test
