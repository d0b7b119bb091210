// What every layer shares: a draw before initialize only logs, a lost context followed by a
// new initialize draws the same pixels, and one full-size frame is left for a person to look
// at. Each layer draws one scene, built from its size, for all three.

#include <algorithm>
#include <cmath>
#include <set>

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
#include "tests/Kinetra/Layers/LayerTestSupport.h"
#include "tests/support/GLCallCounter.h"
#include "tests/support/LogCapture.h"

namespace {

using namespace qam::test;

using namespace Kinetra;

uint8_t byte(double v) {
    return static_cast<uint8_t>(byteOf(v));
}

void clearTo(float r, float g, float b, float a) {
    glClearColor(r, g, b, a);
    glClear(GL_COLOR_BUFFER_BIT);
}

// A water profile strongest on a ring at 0.15 from the middle, falling off by `slope`.
std::vector<uint8_t> ringProfile(double slope) {
    return texels(128, 128, [=](int x, int y) {
        const double r = std::hypot(x + 0.5 - 64, y + 0.5 - 64) / 128;
        return Texel{byte(1 - std::abs(r - 0.15) * slope), 0, 0, 255};
    });
}

// A screen-wide square quad centred on the screen, masked by the disc.
template <typename Brush>
void centreDisc(Brush& brush, int width, int height) {
    namedTexture("disc", 128, 128, disc());
    brush.initialize(width, height);
    brush.setRectAlign(1);
    brush.setSize(width, width);
    brush.setPosition(width / 2, height / 2, 0);
    brush.setMaskTexture("disc");
}

// A ring of radius 0.4 screen widths about the centre, on a texture of the screen's aspect.
LayerTexture ringShape() {
    return LayerTexture(
        108, 192,
        [](int x, int y) {
            const double d = std::hypot(x + 0.5 - 54, y + 0.5 - 96) / 108;
            return Texel{byte(std::exp(-std::pow((d - 0.4) / 0.06, 2))), 0, 0, 255};
        },
        GL_LINEAR);
}

// Scattered sparkles: full alpha on about one texel in seven, faint elsewhere.
LayerTexture sparkles() {
    return LayerTexture(
        64, 64,
        [](int x, int y) {
            const unsigned hash = (x * 73856093u) ^ (y * 19349663u);
            return Texel{0, 0, 0, byte(hash % 7 == 0 ? 1 : 0.235)};
        },
        GL_LINEAR);
}

// Hue across, brightness up the image.
LayerTexture rainbow() {
    return LayerTexture(
        64, 64,
        [](int x, int y) {
            const double h = x / 64.0 * 6;
            const double v = 0.85 - 0.5 * y / 64;
            auto at = [&](double n) {
                const double k = std::fmod(n + h, 6);
                return v - v * 0.7 * std::max(0.0, std::min({k, 4 - k, 1.0}));
            };
            return Texel{byte(at(5)), byte(at(3)), byte(at(1)), 255};
        },
        GL_LINEAR);
}

// The brilliant chain as an effect runs it: a disc of outward directions in a target that
// reads "no direction" around it, then its streaks as grey on an opaque target.
std::unique_ptr<KNFBO> brilliantDisc(int width, int height, const LayerTexture& shape) {
    auto target = boundTarget(width, height, {128, 128, 0, 255});
    LayerTexture pattern = sparkles();
    KNDrawBrilliantRadial radial;
    radial.initialize(width, height);
    radial.setSize(width * 25 / 27, width * 25 / 27);
    radial.setPosition(width / 2, height / 2, 0);
    radial.setAlphaShapeTextureID(shape.id());
    radial.setPatternTextureID(pattern.id());
    radial.draw();
    return target;
}

void drawStreaks(KNDrawBrilliantAdvect& advect, int width, int height, GLuint disc) {
    clearTo(0, 0, 0, 1);
    advect.initialize(width, height);
    advect.setBlendOption(GL_ONE, GL_ZERO, GL_ZERO, GL_ONE);  // the target's alpha is kept
    advect.setRadialTextureID(disc);
    advect.draw();
}

// The fixture's read-back of the bound framebuffer, 0xRRGGBBAA.
using Pixel = uint32_t (*)(int x, int y);

template <typename Layer>
struct Scene;

// What the brushes draw from, 64 x 64: a picture, a colour gradient, a field turning about
// the middle that is present within 24 texels of it, and alpha 1 within 16 texels of the
// middle falling to 0 at 32.
struct Inputs {
    LayerTexture checks{
        64, 64, [](int x, int y) {
            return (x / 8 + y / 8) % 2 == 0 ? Texel{30, 30, 60, 255} : Texel{230, 200, 90, 255};
        }};
    // 4 · index across and up, blue falling across: read at u as 256 u - 2.
    LayerTexture gradient{64, 64,
                          [](int x, int y) {
                              return Texel{static_cast<uint8_t>(4 * x), static_cast<uint8_t>(4 * y),
                                           static_cast<uint8_t>(252 - 4 * x), 255};
                          },
                          GL_LINEAR};
    LayerTexture swirl{64, 64,
                       [](int x, int y) {
                           const int dx = x - 32;
                           const int dy = y - 32;
                           return Texel{static_cast<uint8_t>(128 - 4 * dy),
                                        static_cast<uint8_t>(128 + 4 * dx), 255,
                                        byte(dx * dx + dy * dy < 24 * 24 ? 1 : 0)};
                       },
                       GL_LINEAR};
    LayerTexture blob{64, 64,
                      [](int x, int y) {
                          return Texel{0, 0, 0, byte(2.0 - std::hypot(x - 32.0, y - 32.0) / 16)};
                      },
                      GL_LINEAR};
};

template <>
struct Scene<KNDrawAdvectColorBrush> {
    static constexpr const char* kName = "KNDrawAdvectColorBrush";
    static constexpr bool kLogsWhenLost = false;  // draws with the forgotten program instead
    static void draw(KNDrawAdvectColorBrush& brush, int width, int height) {
        const Inputs in;
        brush.initialize(width, height, 0);
        brush.setFBOID(in.checks.id());
        brush.setVelocityRadialTextureID(in.gradient.id(), in.swirl.id(), in.blob.id());
        brush.changePatternColorTextureID(in.gradient.id());
        brush.setBackgroundTextureID(in.gradient.id());
        brush.draw();
    }
    static void checkFrame(Pixel) {}
};

template <>
struct Scene<KNDrawBGAdvectColorBrush> {
    static constexpr const char* kName = "KNDrawBGAdvectColorBrush";
    static constexpr bool kLogsWhenLost = false;
    static void draw(KNDrawBGAdvectColorBrush& brush, int width, int height) {
        const Inputs in;
        brush.initialize(width, height, 0);
        brush.setRadialVectorScalar(10);
        brush.setFBOID(in.checks.id());
        brush.changeBGTextureID(in.gradient.id());
        brush.setVelocityRadialTextureID(in.swirl.id(), in.swirl.id());
        brush.draw();
    }
    static void checkFrame(Pixel) {}
};

template <>
struct Scene<KNDrawMixColorBrush> {
    static constexpr const char* kName = "KNDrawMixColorBrush";
    static constexpr bool kLogsWhenLost = false;
    static void draw(KNDrawMixColorBrush& brush, int width, int height) {
        const Inputs in;
        brush.initialize(width, height, 0);
        brush.changeBGTextureID(in.gradient.id());
        brush.setMixColorTextureID(in.blob.id(), in.checks.id(), in.gradient.id());
        brush.draw();
    }
    static void checkFrame(Pixel) {}
};

template <>
struct Scene<KNDrawBGAdvectWaterBrush> {
    static constexpr const char* kName = "KNDrawBGAdvectWaterBrush";
    static constexpr bool kLogsWhenLost = true;
    // The picture pulled for twelve frames, in two targets in turn, along the field of a
    // radial water brush strongest on a ring, over the fitted background.
    static void draw(KNDrawBGAdvectWaterBrush& brush, int width, int height) {
        const SavedTarget screen;
        const Inputs in;
        registerBackground();
        namedTexture("ring", 128, 128, ringProfile(5));
        auto field = boundTarget(width, height);
        KNDrawRadialWaterBrush radial;
        centreDisc(radial, width, height);
        radial.setGraphTexture("ring");
        radial.setTimeStep(1);
        radial.draw();

        brush.initialize(width, height, 0);
        brush.setBGTexture("bg", false);
        brush.setRadialVectorScalar(10);
        brush.setVelocityRadialTextureID(in.gradient.id(), field->getFBOTexture());
        std::unique_ptr<KNFBO> frames[2];
        unsigned int previous = in.checks.id();
        for (int frame = 0; frame < 12; ++frame) {
            const bool last = frame == 11;
            if (last) {
                screen.restore();
            } else {
                frames[frame % 2] = boundTarget(width, height);
            }
            brush.setFBOID(previous);
            brush.draw();
            previous = last ? 0 : frames[frame % 2]->getFBOTexture();
        }
    }
    static void checkFrame(Pixel pixel) {
        // Outside the field, the fitted background: green 256 v - 2 halfway up.
        EXPECT_PIXEL_NEAR(pixel(5, 960), rgba(60, byteOf((256 * 960.5 / 1920 - 2) / 255), 200, 255),
                          kLayerTolerance);
    }
};

template <>
struct Scene<KNDrawMixWaterBrush> {
    static constexpr const char* kName = "KNDrawMixWaterBrush";
    static constexpr bool kLogsWhenLost = true;
    // The gradient as density shown through the blob over the fitted background.
    static void draw(KNDrawMixWaterBrush& brush, int width, int height) {
        const Inputs in;
        registerBackground();
        brush.initialize(width, height, 0);
        brush.setBGTexture("bg", false);
        brush.setAlphaDensityTextureID(in.blob.id(), in.gradient.id());
        brush.draw();
    }
    static void checkFrame(Pixel pixel) {
        const uint32_t outside = pixel(5, 960);
        EXPECT_NEAR(channel(outside, 24), 60, kLayerTolerance);
        EXPECT_NEAR(channel(outside, 16), 256 * 960.5 / 1920 - 2, kLayerTolerance);
        // In the middle a near grey density (126 of 255) stays grey, brightened by 1.1.
        const int grey = byteOf((256 * 0.5 - 2) / 255 * 1.1);
        EXPECT_PIXEL_NEAR(pixel(540, 960), rgba(grey, grey, grey, 255), kLayerTolerance);
    }
};

template <>
struct Scene<KNDrawRadialColorBrush> {
    static constexpr const char* kName = "KNDrawRadialColorBrush";
    static constexpr bool kLogsWhenLost = true;
    static void draw(KNDrawRadialColorBrush& brush, int width, int height) {
        clearTo(0, 0, 0, 1);
        centreDisc(brush, width, height);
        brush.setTimeStep(0.8f);
        brush.draw();
    }
    static void checkFrame(Pixel pixel) {
        // 200 pixels left of the centre. Beyond about 256 pixels the squared length overflows
        // mediump where it is a half float (llvmpipe's is) and the field reads (0.5, 0.5).
        EXPECT_PIXEL_NEAR(pixel(340, 960), rgba(153, 128, 204, 255), kLayerTolerance);
        EXPECT_EQ(pixel(5, 5), 0x000000FFu);
    }
};

template <>
struct Scene<KNDrawRadialColorBrushColor> {
    static constexpr const char* kName = "KNDrawRadialColorBrushColor";
    static constexpr bool kLogsWhenLost = true;
    // Red across, green up the screen, blue falling across, through the disc.
    static void draw(KNDrawRadialColorBrushColor& brush, int width, int height) {
        clearTo(0, 0, 0, 1);
        std::vector<uint8_t> colours = texels(64, 64, [](int x, int y) {
            return Texel{static_cast<uint8_t>(4 * x), static_cast<uint8_t>(4 * y),
                         static_cast<uint8_t>(252 - 4 * x), 255};
        });
        KNTextureManager::getInstancePtr()->setTextureMagFilterOption(GL_LINEAR);
        KNTextureManager::getInstancePtr()->setTexture("colours", colours.data(), 64, 64);
        centreDisc(brush, width, height);
        brush.setColorTexture("colours");
        brush.setResolutionRatio(1);
        brush.draw();
    }
    static void checkFrame(Pixel pixel) {
        // The screen's middle reads the image's middle, 4 · index read at u as 256 u - 2.
        const uint32_t middle = pixel(540, 960);
        EXPECT_NEAR(channel(middle, 24), 256 * 540.5 / 1080 - 2, kLayerTolerance);
        EXPECT_NEAR(channel(middle, 16), 256 * 960.5 / 1920 - 2, kLayerTolerance);
        EXPECT_EQ(pixel(5, 5), 0x000000FFu);
    }
};

template <>
struct Scene<KNDrawRadialWaterBrush> {
    static constexpr const char* kName = "KNDrawRadialWaterBrush";
    static constexpr bool kLogsWhenLost = true;
    // A profile strongest on a ring within the reach of the field (about 256 pixels where
    // mediump is a half float).
    static void draw(KNDrawRadialWaterBrush& brush, int width, int height) {
        clearTo(0, 0, 0, 1);
        namedTexture("ring", 128, 128, ringProfile(10));
        centreDisc(brush, width, height);
        brush.setGraphTexture("ring");
        brush.setTimeStep(1);
        brush.draw();
    }
    static void checkFrame(Pixel pixel) {
        // On the ring, 162 pixels left of the centre: full strength, pointing right.
        const uint32_t ring = pixel(378, 960);
        EXPECT_NEAR(channel(ring, 24), 0.6 * 255, kLayerTolerance);
        EXPECT_NEAR(channel(ring, 16), 0.5 * 255, kLayerTolerance);
        EXPECT_GT(channel(ring, 8), 240);
        EXPECT_LT(channel(pixel(530, 960), 8), 10);
    }
};

template <>
struct Scene<KNDrawBrilliantRadial> {
    static constexpr const char* kName = "KNDrawBrilliantRadial";
    static constexpr bool kLogsWhenLost = true;
    static void draw(KNDrawBrilliantRadial& radial, int width, int height) {
        clearTo(128 / 255.0f, 128 / 255.0f, 0, 1);
        LayerTexture shape = ringShape();
        LayerTexture pattern = sparkles();
        radial.initialize(width, height);
        radial.setSize(width * 25 / 27, width * 25 / 27);
        radial.setPosition(width / 2, height / 2, 0);
        radial.setAlphaShapeTextureID(shape.id());
        radial.setPatternTextureID(pattern.id());
        radial.draw();
    }
    static void checkFrame(Pixel pixel) {
        EXPECT_EQ(pixel(0, 0), 0x808000FFu);  // outside the disc
        EXPECT_GT(channel(pixel(972, 960), 8), 0);
    }
};

template <>
struct Scene<KNDrawBrilliantAdvect> {
    static constexpr const char* kName = "KNDrawBrilliantAdvect";
    static constexpr bool kLogsWhenLost = true;
    static void draw(KNDrawBrilliantAdvect& advect, int width, int height) {
        const SavedTarget screen;
        LayerTexture shape = ringShape();
        auto directions = brilliantDisc(width, height, shape);
        screen.restore();
        drawStreaks(advect, width, height, directions->getFBOTexture());
    }
    static void checkFrame(Pixel pixel) { EXPECT_GT(channel(pixel(972, 960), 24), 0); }
};

template <>
struct Scene<KNDrawBrilliantRing> {
    static constexpr const char* kName = "KNDrawBrilliantRing";
    static constexpr bool kLogsWhenLost = true;
    // The streaks as shine, no diamonds; the hue-shifted zoom shows along the ring shape.
    static void draw(KNDrawBrilliantRing& ring, int width, int height) {
        const SavedTarget screen;
        LayerTexture shape = ringShape();
        LayerTexture background = rainbow();
        LayerTexture black(Texel{0, 0, 0, 255});
        auto directions = brilliantDisc(width, height, shape);
        auto streaks = boundTarget(width, height);
        KNDrawBrilliantAdvect advect;
        drawStreaks(advect, width, height, directions->getFBOTexture());
        screen.restore();
        clearTo(0, 0, 0, 0);
        ring.initialize(width, height);
        ring.setBackgroundTextureID(background.id());
        ring.setShineTextureID(streaks->getFBOTexture());
        ring.setDiamondTextureID(black.id());
        ring.setAlphaTextureID(shape.id());
        ring.setBlurTextureID(black.id());
        ring.draw();
    }
    // Unlit corners show the background as it is, opaque.
    static void checkFrame(Pixel pixel) { EXPECT_EQ(channel(pixel(0, 0), 0), 255); }
};

template <typename Layer>
class LayerLifecycleTest : public LayerTest {};

using Layers =
    ::testing::Types<KNDrawAdvectColorBrush, KNDrawBGAdvectColorBrush, KNDrawMixColorBrush,
                     KNDrawBGAdvectWaterBrush, KNDrawMixWaterBrush, KNDrawRadialColorBrush,
                     KNDrawRadialColorBrushColor, KNDrawRadialWaterBrush, KNDrawBrilliantRadial,
                     KNDrawBrilliantAdvect, KNDrawBrilliantRing>;
TYPED_TEST_SUITE(LayerLifecycleTest, Layers);

TYPED_TEST(LayerLifecycleTest, DrawBeforeInitializeLogsOneLineAndDrawsNothing) {
    TypeParam layer;
    LogCapture log;
    GLCallCounter calls;
    layer.draw();
    EXPECT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(calls.count("glDrawElements"), 0);
    const int w = TestFixture::kWidth;
    const int h = TestFixture::kHeight;
    EXPECT_EQ(this->gl().readPixels(0, 0, w, h), std::vector<uint8_t>(w * h * 4, 0));
}

TYPED_TEST(LayerLifecycleTest, DrawsTheSamePixelsAfterALostContextAndANewInitialize) {
    using S = Scene<TypeParam>;
    const int w = TestFixture::kWidth;
    const int h = TestFixture::kHeight;
    TypeParam layer;
    S::draw(layer, w, h);
    const std::vector<uint8_t> before = this->gl().readPixels(0, 0, w, h);
    std::set<uint32_t> colours;
    for (size_t i = 0; i < before.size(); i += 4) {
        colours.insert(rgba(before[i], before[i + 1], before[i + 2], before[i + 3]));
    }
    EXPECT_GT(colours.size(), 2u) << "the scene should draw more than a flat colour";

    this->loseContext();
    KNTextureManager::getInstancePtr()->contextChanged();
    layer.contextChanged();
    glViewport(0, 0, w, h);
    clearTo(0, 0, 0, 0);
    {
        // Until initialised again it draws nothing.
        LogCapture log;
        layer.draw();
        EXPECT_EQ(log.messages().size(), S::kLogsWhenLost ? 1u : 0u);
        EXPECT_EQ(this->gl().readPixels(0, 0, w, h), std::vector<uint8_t>(before.size(), 0));
    }
    S::draw(layer, w, h);
    EXPECT_EQ(this->gl().readPixels(0, 0, w, h), before);
}

TYPED_TEST(LayerLifecycleTest, LeavesAFullSizeFrameToLookAt) {
    using S = Scene<TypeParam>;
    auto target = boundTarget(kFrameWidth, kFrameHeight);
    TypeParam layer;
    S::draw(layer, kFrameWidth, kFrameHeight);
    S::checkFrame(&TestFixture::pixel);
    EXPECT_TRUE(leaveLayerFrame(S::kName, kFrameWidth, kFrameHeight));
}

}  // namespace
