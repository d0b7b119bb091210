#include <GLES2/gl2.h>

#include <cmath>
#include <cstdint>
#include <string>

#include "Kinetra/Layers/KNDrawBrilliantAdvect.h"
#include "Kinetra/Layers/KNDrawBrilliantRadial.h"
#include "Kinetra/Layers/KNDrawBrilliantRing.h"
#include "examples/common/Png.h"
#include "tests/Kinetra/Layers/LayerTestSupport.h"
#include "tests/support/GLTest.h"

namespace {

using Kinetra::KNDrawBrilliantAdvect;
using Kinetra::KNDrawBrilliantRadial;
using Kinetra::KNDrawBrilliantRing;
using qam::test::channel;
using qam::test::GLTest;
using qam::test::LayerTexture;
using qam::test::Texel;
using qam::test::texels;

constexpr int kFrameWidth = 1080;
constexpr int kFrameHeight = 1920;

uint8_t byte(double v) {
    return static_cast<uint8_t>(qam::test::byteOf(v));
}

// A ring of radius 0.4 screen widths about the centre, on a texture of the screen's aspect.
LayerTexture ringShape() {
    return LayerTexture(108, 192,
                        texels(108, 192,
                               [](int x, int y) {
                                   const double d = std::hypot(x + 0.5 - 54, y + 0.5 - 96) / 108;
                                   const double profile = std::exp(-std::pow((d - 0.4) / 0.06, 2));
                                   return Texel{byte(profile), 0, 0, 255};
                               }),
                        GL_LINEAR);
}

// Scattered sparkles: full alpha on about one texel in seven, faint elsewhere.
LayerTexture sparkles() {
    return LayerTexture(
        64, 64,
        texels(64, 64,
               [](int x, int y) {
                   const unsigned hash = (x * 73856093u) ^ (y * 19349663u);
                   return Texel{0, 0, 0, static_cast<uint8_t>(hash % 7 == 0 ? 255 : 60)};
               }),
        GL_LINEAR);
}

// Hue across, brightness up the image.
LayerTexture rainbow() {
    return LayerTexture(64, 64,
                        texels(64, 64,
                               [](int x, int y) {
                                   const double h = x / 64.0 * 6;
                                   const double v = 0.85 - 0.5 * y / 64;
                                   const double s = 0.7;
                                   auto at = [&](double n) {
                                       const double k = std::fmod(n + h, 6);
                                       return v - v * s * std::max(0.0, std::min({k, 4 - k, 1.0}));
                                   };
                                   return Texel{byte(at(5)), byte(at(3)), byte(at(1)), 255};
                               }),
                        GL_LINEAR);
}

void expectPngOf(const std::string& path) {
    ASSERT_FALSE(path.empty());
    qam::Image image;
    ASSERT_TRUE(qam::readPng(path, image));
    EXPECT_EQ(image.width, kFrameWidth);
    EXPECT_EQ(image.height, kFrameHeight);
}

class BrilliantLayerFramesTest : public GLTest {};

// The three layers chained as an effect would: the radial disc into one target, its streaks
// into another, the ring composited on the screen. Each leaves its frame as a PNG.
TEST_F(BrilliantLayerFramesTest, LeaveOneFullSizeFrameEachToLookAt) {
    LayerTexture shape = ringShape();
    LayerTexture pattern = sparkles();
    LayerTexture background = rainbow();
    LayerTexture black({0, 0, 0, 255});

    // A 1000-pixel disc in the middle of the screen.
    auto radialTarget = qam::test::boundTarget(kFrameWidth, kFrameHeight, {128, 128, 0, 255});
    KNDrawBrilliantRadial radial;
    radial.initialize(kFrameWidth, kFrameHeight);
    radial.setSize(1000, 1000);
    radial.setPosition(kFrameWidth / 2, kFrameHeight / 2, 0);
    radial.setAlphaShapeTextureID(shape.id());
    radial.setPatternTextureID(pattern.id());
    radial.draw();
    expectPngOf(qam::test::writeLayerFrame("KNDrawBrilliantRadial", kFrameWidth, kFrameHeight));
    EXPECT_EQ(pixel(0, 0), 0x808000FFu);  // outside the disc
    EXPECT_GT(channel(pixel(972, 960), 8), 0);

    auto advectTarget = qam::test::boundTarget(kFrameWidth, kFrameHeight, {0, 0, 0, 255});
    KNDrawBrilliantAdvect advect;
    advect.initialize(kFrameWidth, kFrameHeight);
    // The intensity as grey on the opaque target: its alpha is kept.
    advect.setBlendOption(GL_ONE, GL_ZERO, GL_ZERO, GL_ONE);
    advect.setRadialTextureID(radialTarget->getFBOTexture());
    advect.draw();
    expectPngOf(qam::test::writeLayerFrame("KNDrawBrilliantAdvect", kFrameWidth, kFrameHeight));
    EXPECT_GT(channel(pixel(972, 960), 24), 0);

    gl().resize(kFrameWidth, kFrameHeight);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glViewport(0, 0, kFrameWidth, kFrameHeight);
    KNDrawBrilliantRing ring;
    ring.initialize(kFrameWidth, kFrameHeight);
    ring.setBackgroundTextureID(background.id());
    // The streaks as shine, no diamonds; the hue-shifted zoom shows along the ring shape.
    ring.setShineTextureID(advectTarget->getFBOTexture());
    ring.setDiamondTextureID(black.id());
    ring.setAlphaTextureID(shape.id());
    ring.setBlurTextureID(black.id());
    ring.draw();
    expectPngOf(qam::test::writeLayerFrame("KNDrawBrilliantRing", kFrameWidth, kFrameHeight));
    // Unlit corners show the background as it is, opaque.
    EXPECT_EQ(channel(pixel(0, 0), 0), 255);
}

}  // namespace
