#include "Kinetra/Layers/KNDrawMixColorBrush.h"

#include <cmath>

#include "tests/Kinetra/Layers/LayerTestSupport.h"
#include "tests/support/GLCallCounter.h"

namespace {

using namespace qam::test;

using Kinetra::KNDrawMixColorBrush;

constexpr int kSize = 64;

// The colour density (0.6, 0.4, 0.2).
constexpr Texel kOchre{153, 102, 51, 255};

class KNDrawMixColorBrushTest : public TargetLayerTest {
  protected:
    // Draws the ochre density at full alpha over black and returns the middle pixel.
    uint32_t ochreOverBlack(KNDrawMixColorBrush& brush) {
        brush.changeBGTextureID(mBlack.id());
        brush.setMixColorTextureID(mOpaque.id(), mBlack.id(), mOchre.id());
        brush.draw();
        return pixel(32, 32);
    }

    LayerTexture mBlack{Texel{0, 0, 0, 255}};
    LayerTexture mOpaque{Texel{0, 0, 0, 255}};  // alpha texture: weight 0.95
    LayerTexture mOchre{kOchre};
};

// The bright weight 0.89 is there before initialize; the slots GL keeps no location for; the
// units.
TEST_F(KNDrawMixColorBrushTest, DefaultsSlotsAndUnits) {
    KNDrawMixColorBrush brush;
    EXPECT_FLOAT_EQ(brush.getBrightWeight(), 0.89f);
    brush.initialize(kSize, kSize, 0);  // its other defaults are worked by hand below

    const unsigned int sea = namedTexture("sea", Texel{0, 0, 255, 255});
    brush.setBGTexture("sea", true);
    brush.setMixColorTextureID(41, 42, 43);
    brush.setAlpha(0.25f);
    Kinetra::KNShaderManager& shader = *brush.getShaderManager();
    const GLuint program = shader.getProgram();
    expectUniformSlots(shader, {"uMVPMatrix", "uTexMap", "uDensity", "uAlpha", "uAlphaRatio",
                                "uBrightRatio", "uSaturation", "uBrightness", "uRedSaturation",
                                "uGreenSaturation", "uBlueSaturation", "uColorDensity"});
    // Declared and sent, but no part of the result: GL keeps no location for them.
    EXPECT_EQ(shader.getUniform(5), -1);
    EXPECT_EQ(shader.getUniform(9), -1);
    EXPECT_EQ(shader.getUniform(10), -1);

    GLCallCounter calls;
    brush.draw();
    EXPECT_EQ(calls.count("glDrawElements"), 1);
    expectSamplers(program,
                   {{"uTexMap", sea}, {"uDensity", 42}, {"uAlpha", 41}, {"uColorDensity", 43}});
    EXPECT_EQ(uniformFloat(program, "uAlphaRatio"), 0.25f);

    brush.resizeSurface(32, 32);
    EXPECT_EQ(brush.getBGTextureID(), kUnset);
    EXPECT_EQ(brush.getAlphaTextureID(), 41u);
}

// Saturation about P = sqrt((r² + g² + b²) · red weight), the same P for every channel; the
// result laid over the base by 0.95 · alpha⁴ with the alpha replaced by the ratio.
TEST_F(KNDrawMixColorBrushTest, SaturatesAboutTheRedWeightedGreyLevel) {
    KNDrawMixColorBrush brush;
    brush.initialize(kSize, kSize, 0);

    // Defaults, worked by hand: brightness 1.1 gives (0.66, 0.44, 0.22), P = 0.4752 with
    // weight 0.3333; saturation 1.2 gives (0.6969, 0.4329, 0.1689), times 0.95 is
    // (0.6620, 0.4113, 0.1605).
    EXPECT_PIXEL_NEAR(ochreOverBlack(brush), 0xA96929FFu, kLayerTolerance);

    // Saturation 1 leaves the density as it is.
    brush.setBrightness(1);
    brush.setSaturation(1);
    EXPECT_PIXEL_NEAR(ochreOverBlack(brush), 0x916130FFu, kLayerTolerance);  // 0.95 · ochre

    // Saturation 0 turns every channel to P: sqrt(0.56 · 0.3333) = 0.4320, times 0.95.
    brush.setSaturation(0);
    const uint32_t grey = ochreOverBlack(brush);
    EXPECT_PIXEL_NEAR(grey, 0x696969FFu, kLayerTolerance);

    // Only the red weight takes part: the other two and the bright ratio change nothing.
    brush.setGreenSaturation(5);
    brush.setBlueSaturation(0);
    brush.setBrightWeight(9);
    EXPECT_EQ(ochreOverBlack(brush), grey);
    brush.setRedSaturation(1);
    const int p = byteOf(std::sqrt(0.56) * 0.95);  // 0.7483 · 0.95 = 0.7109
    EXPECT_PIXEL_NEAR(ochreOverBlack(brush),
                      static_cast<uint32_t>(p << 24 | p << 16 | p << 8 | 255), kLayerTolerance);

    // The ratio replaces the alpha, and blending onto the cleared target applies it.
    brush.setAlpha(0.5f);
    mTarget->clearFBOSurface();
    const uint32_t half = ochreOverBlack(brush);
    EXPECT_NEAR(channel(half, 24), byteOf(0.5 * unit(p)), kLayerTolerance);
    EXPECT_NEAR(channel(half, 0), byteOf(0.25), kLayerTolerance);
}

TEST_F(KNDrawMixColorBrushTest, WeighsTheDensityByTheFourthPowerOfAlpha) {
    // Base rows 4 · y, upside down: this brush puts texture row v = 1 at the bottom.
    LayerTexture base(kSize, kSize, [](int, int y) {
        return Texel{255, static_cast<uint8_t>(4 * y), 255, 255};
    });
    LayerTexture halfAlpha(Texel{0, 0, 0, 128});
    LayerTexture transparent(Texel{0, 0, 0, 0});
    KNDrawMixColorBrush brush;
    brush.initialize(kSize, kSize, 0);
    brush.setBrightness(1);
    brush.setSaturation(1);
    brush.changeBGTextureID(base.id());
    brush.setMixColorTextureID(transparent.id(), mBlack.id(), mOchre.id());
    brush.draw();
    EXPECT_PIXEL_NEAR(pixel(10, 0), 0xFFFCFFFFu, 1);
    EXPECT_PIXEL_NEAR(pixel(10, 63), 0xFF00FFFFu, 1);

    // At alpha 0.502 the density is half black, half ochre, and weighs 0.95 · 0.502⁴ = 0.0603.
    brush.setMixColorTextureID(halfAlpha.id(), mBlack.id(), mOchre.id());
    brush.draw();
    const double a = unit(128);
    const double weight = std::pow(a, 4.0) * 0.95;
    EXPECT_NEAR(weight, 0.0603, 0.0001);
    const uint32_t p = pixel(10, 63);  // base (1, 0, 1)
    EXPECT_NEAR(channel(p, 24), byteOf(1 - weight + unit(153) * a * weight), kLayerTolerance);
    EXPECT_NEAR(channel(p, 16), byteOf(unit(102) * a * weight), kLayerTolerance);
    EXPECT_NEAR(channel(p, 8), byteOf(1 - weight + unit(51) * a * weight), kLayerTolerance);
    EXPECT_EQ(channel(p, 0), 255);
}

TEST_F(KNDrawMixColorBrushTest, BadInputIsLoggedAndDroppedZeroTexturesAreBoundAsTheyAre) {
    KNDrawMixColorBrush brush;
    expectOneLogLineEach({[&] { brush.initialize(std::nanf(""), 64, 0); }});
    EXPECT_EQ(brush.getShaderManager(), nullptr);

    brush.initialize(kSize, kSize, 0);
    brush.changeBGTextureID(5);
    expectOneLogLineEach({[&] { brush.setBGTexture(nullptr, false); }});
    EXPECT_EQ(brush.getBGTextureID(), 5u);
    // Zero textures are bound as they are and sample opaque black: the black density takes
    // 0.95 of the ochre base away.
    brush.changeBGTextureID(mOchre.id());
    brush.draw();
    EXPECT_EQ(boundTexture(1), 0u);
    EXPECT_PIXEL_NEAR(pixel(5, 5), 0x080503FFu, kLayerTolerance);
}

}  // namespace
