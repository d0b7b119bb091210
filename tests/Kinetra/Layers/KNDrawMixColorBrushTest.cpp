#include "Kinetra/Layers/KNDrawMixColorBrush.h"

#include <GLES2/gl2.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "Kinetra/Core/KNShaderManager.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "examples/common/Png.h"
#include "tests/Kinetra/Layers/LayerTestSupport.h"
#include "tests/support/GLCallCounter.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace {

using Kinetra::KNDrawMixColorBrush;
using Kinetra::KNTextureManager;
using qam::test::byteOf;
using qam::test::channel;
using qam::test::GLTest;
using qam::test::kLayerTolerance;
using qam::test::LayerTexture;
using qam::test::Texel;
using qam::test::texels;
using qam::test::unit;

constexpr unsigned int kUnset = 0xFFFFFFFFu;
constexpr int kSize = 64;

// The colour density (0.6, 0.4, 0.2).
constexpr Texel kOchre{153, 102, 51, 255};

GLuint boundTexture(GLenum unit) {
    glActiveTexture(GL_TEXTURE0 + unit);
    GLint name = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &name);
    return static_cast<GLuint>(name);
}

class KNDrawMixColorBrushTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        KNTextureManager::ReleaseInstance();
        mTarget->bindFBOSurface();
    }
    void TearDown() override { KNTextureManager::ReleaseInstance(); }

    // Draws the ochre density at full alpha over black and returns the middle pixel.
    uint32_t ochreOverBlack(KNDrawMixColorBrush& brush) {
        brush.changeBGTextureID(mBlack.id());
        brush.setMixColorTextureID(mOpaque.id(), mBlack.id(), mOchre.id());
        brush.draw();
        return pixel(32, 32);
    }

    std::unique_ptr<Kinetra::KNFBO> mTarget = qam::test::boundTarget(kSize, kSize);
    LayerTexture mBlack{Texel{0, 0, 0, 255}};
    LayerTexture mOpaque{Texel{0, 0, 0, 255}};  // alpha texture: weight 0.95
    LayerTexture mOchre{kOchre};
};

TEST_F(KNDrawMixColorBrushTest, DefaultsSettersSlotsAndUnits) {
    KNDrawMixColorBrush brush;
    EXPECT_EQ(brush.getBGTextureID(), kUnset);
    EXPECT_EQ(brush.getAlphaTextureID(), 0u);
    EXPECT_EQ(brush.getDensityTextureID(), 0u);
    EXPECT_EQ(brush.getColorDensityTextureID(), 0u);
    EXPECT_EQ(brush.getAlpha(), 1.0f);
    EXPECT_FLOAT_EQ(brush.getBrightWeight(), 0.89f);
    EXPECT_EQ(brush.getBrightness(), 0.0f);
    EXPECT_EQ(brush.getSaturation(), 0.0f);
    EXPECT_EQ(brush.getRedSaturation(), 0.0f);
    EXPECT_EQ(brush.getBlueSaturation(), 0.0f);
    brush.setScale(2, 2, 2);
    EXPECT_EQ(brush.getMVPManager(), nullptr);

    brush.initialize(kSize, kSize, 0);
    EXPECT_FLOAT_EQ(brush.getBrightness(), 1.1f);
    EXPECT_FLOAT_EQ(brush.getSaturation(), 1.2f);
    EXPECT_FLOAT_EQ(brush.getRedSaturation(), 0.3333f);
    EXPECT_FLOAT_EQ(brush.getGreenSaturation(), 0.3333f);
    EXPECT_FLOAT_EQ(brush.getBlueSaturation(), 0.3333f);
    EXPECT_FLOAT_EQ(brush.getBrightWeight(), 0.89f);

    // Stored as given.
    brush.setAlpha(0.25f);
    brush.setBrightWeight(3);
    brush.setSaturation(-1);
    brush.setGreenSaturation(7);
    EXPECT_EQ(brush.getAlpha(), 0.25f);
    EXPECT_EQ(brush.getBrightWeight(), 3.0f);
    EXPECT_EQ(brush.getSaturation(), -1.0f);
    EXPECT_EQ(brush.getGreenSaturation(), 7.0f);

    const unsigned char blue[4] = {0, 0, 255, 255};
    const unsigned int sea = KNTextureManager::getInstancePtr()->setTexture(
        "sea", const_cast<unsigned char*>(blue), 1, 1);
    brush.setBGTexture("sea", true);
    EXPECT_EQ(brush.getBGTextureID(), sea);
    brush.setMixColorTextureID(41, 42, 43);
    EXPECT_EQ(brush.getAlphaTextureID(), 41u);
    EXPECT_EQ(brush.getDensityTextureID(), 42u);
    EXPECT_EQ(brush.getColorDensityTextureID(), 43u);

    Kinetra::KNShaderManager& shader = *brush.getShaderManager();
    const GLuint program = shader.getProgram();
    const char* slots[] = {"uMVPMatrix",       "uTexMap",         "uDensity",
                           "uAlpha",           "uAlphaRatio",     "uBrightRatio",
                           "uSaturation",      "uBrightness",     "uRedSaturation",
                           "uGreenSaturation", "uBlueSaturation", "uColorDensity"};
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(shader.getUniform(i), glGetUniformLocation(program, slots[i])) << slots[i];
    }
    // Declared and sent, but no part of the result: GL keeps no location for them.
    EXPECT_EQ(shader.getUniform(5), -1);
    EXPECT_EQ(shader.getUniform(9), -1);
    EXPECT_EQ(shader.getUniform(10), -1);

    qam::test::GLCallCounter calls;
    brush.draw();
    EXPECT_EQ(calls.count("glDrawElements"), 1);
    const GLuint units[] = {sea, 42, 41, 43};
    const int samplerSlots[] = {1, 2, 3, 11};
    for (GLenum unit = 0; unit < 4; ++unit) {
        EXPECT_EQ(boundTexture(unit), units[unit]) << "unit " << unit;
        GLint sampler = -1;
        glGetUniformiv(program, shader.getUniform(samplerSlots[unit]), &sampler);
        EXPECT_EQ(sampler, static_cast<GLint>(unit));
    }
    float ratio = 0;
    glGetUniformfv(program, shader.getUniform(4), &ratio);
    EXPECT_EQ(ratio, 0.25f);

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
    LayerTexture base(kSize, kSize, texels(kSize, kSize, [](int, int y) {
                          return Texel{255, static_cast<uint8_t>(4 * y), 255, 255};
                      }));
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

TEST_F(KNDrawMixColorBrushTest, DrawsTheSameFrameAfterALostContext) {
    const auto baseTexels = texels(kSize, kSize, [](int x, int y) {
        return Texel{static_cast<uint8_t>(4 * x), static_cast<uint8_t>(4 * y), 90, 255};
    });
    const auto alphaTexels = texels(kSize, kSize, [](int x, int) {
        return Texel{0, 0, 0, static_cast<uint8_t>(4 * x)};
    });
    KNDrawMixColorBrush brush;
    brush.initialize(kSize, kSize, 0);
    auto drawFrame = [&](LayerTexture& base, LayerTexture& alpha, LayerTexture& colour) {
        brush.changeBGTextureID(base.id());
        brush.setMixColorTextureID(alpha.id(), base.id(), colour.id());
        brush.draw();
        return qam::readFramebuffer(kSize, kSize).rgba;
    };
    std::vector<uint8_t> before;
    {
        LayerTexture base(kSize, kSize, baseTexels);
        LayerTexture alpha(kSize, kSize, alphaTexels);
        LayerTexture colour(kOchre);
        before = drawFrame(base, alpha, colour);
        loseContext();
        mTarget->contextChanged();
        for (LayerTexture* t : {&base, &alpha, &colour, &mBlack, &mOpaque, &mOchre}) {
            t->forget();
        }
    }
    brush.contextChanged();
    brush.initialize(kSize, kSize, 0);
    mTarget->createFBOSurface(kSize, kSize);
    mTarget->bindFBOSurface();
    LayerTexture base(kSize, kSize, baseTexels);
    LayerTexture alpha(kSize, kSize, alphaTexels);
    LayerTexture colour(kOchre);
    EXPECT_EQ(drawFrame(base, alpha, colour), before);
}

TEST_F(KNDrawMixColorBrushTest, BadInputIsLoggedAndDropped) {
    qam::test::LogCapture log;
    KNDrawMixColorBrush brush;
    qam::test::GLCallCounter calls;
    brush.draw();
    EXPECT_EQ(calls.count("glDrawElements"), 0);
    brush.initialize(std::nanf(""), 64, 0);
    EXPECT_EQ(brush.getShaderManager(), nullptr);
    EXPECT_EQ(log.messages().size(), 2u);

    brush.initialize(kSize, kSize, 0);
    brush.changeBGTextureID(5);
    brush.setBGTexture(nullptr, false);
    EXPECT_EQ(brush.getBGTextureID(), 5u);
    EXPECT_EQ(log.messages().size(), 3u);
    // Zero textures are bound as they are and sample opaque black: the black density takes
    // 0.95 of the ochre base away.
    brush.changeBGTextureID(mOchre.id());
    brush.draw();
    EXPECT_EQ(calls.count("glDrawElements"), 1);
    EXPECT_EQ(boundTexture(1), 0u);
    EXPECT_PIXEL_NEAR(pixel(5, 5), 0x080503FFu, kLayerTolerance);
}

TEST_F(KNDrawMixColorBrushTest, LeavesAFullSizeFrameToLookAt) {
    constexpr int kWidthPx = 1080;
    constexpr int kHeightPx = 1920;
    auto target = qam::test::boundTarget(kWidthPx, kHeightPx);
    // A dusk gradient as the base; a soft blob of density whose colour turns from blue to
    // ochre across the screen.
    LayerTexture base(kSize, kSize,
                      texels(kSize, kSize,
                             [](int, int y) {
                                 return Texel{static_cast<uint8_t>(20 + y), 30,
                                              static_cast<uint8_t>(60 + 2 * y), 255};
                             }),
                      GL_LINEAR);
    LayerTexture blob(kSize, kSize,
                      texels(kSize, kSize,
                             [](int x, int y) {
                                 const double d = std::hypot(x - 32.0, y - 32.0) / 32.0;
                                 return Texel{0, 0, 0, static_cast<uint8_t>(byteOf(1.0 - d))};
                             }),
                      GL_LINEAR);
    LayerTexture density(Texel{40, 90, 220, 255});
    KNDrawMixColorBrush brush;
    brush.initialize(kWidthPx, kHeightPx, 0);
    brush.changeBGTextureID(base.id());
    brush.setMixColorTextureID(blob.id(), density.id(), mOchre.id());
    brush.draw();
    const std::string path = qam::test::writeLayerFrame("KNDrawMixColorBrush", kWidthPx, kHeightPx);
    ASSERT_FALSE(path.empty());
    qam::Image image;
    ASSERT_TRUE(qam::readPng(path, image));
    EXPECT_EQ(image.width, kWidthPx);
    EXPECT_EQ(image.height, kHeightPx);
    EXPECT_EQ(image.rgba, qam::readFramebuffer(kWidthPx, kHeightPx).rgba);
}

}  // namespace
