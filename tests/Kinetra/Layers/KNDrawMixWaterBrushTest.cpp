#include "Kinetra/Layers/KNDrawMixWaterBrush.h"

#include <cmath>

#include "tests/Kinetra/Layers/LayerTestSupport.h"
#include "tests/support/LogCapture.h"

namespace {

using namespace qam::test;

using Kinetra::KNDrawMixWaterBrush;

struct Rgba {
    double r, g, b, a;
};

// What the brush writes for one density texel fully shown (alpha texture at 1).
Rgba saturated(Rgba d, double brightness, double saturation, double wr, double wg, double wb) {
    d = {d.r * brightness, d.g * brightness, d.b * brightness, d.a * brightness};
    const double p = std::sqrt(d.r * d.r * wr + d.g * d.g * wg + d.b * d.b * wb);
    return {p + (d.r - p) * saturation, p + (d.g - p) * saturation, p + (d.b - p) * saturation,
            d.a};
}

void expectRgba(uint32_t actual, Rgba expected) {
    EXPECT_NEAR(channel(actual, 24), byteOf(expected.r), kLayerTolerance);
    EXPECT_NEAR(channel(actual, 16), byteOf(expected.g), kLayerTolerance);
    EXPECT_NEAR(channel(actual, 8), byteOf(expected.b), kLayerTolerance);
    EXPECT_NEAR(channel(actual, 0), byteOf(expected.a), kLayerTolerance);
}

using KNDrawMixWaterBrushTest = LayerTest;

TEST_F(KNDrawMixWaterBrushTest, SlotsUnitsAndBlending) {
    KNDrawMixWaterBrush brush;
    brush.initialize(kWidth, kHeight, 0);
    Kinetra::KNShaderManager& shader = brush.getShaderManager();
    const GLuint program = shader.getProgram();
    const struct {
        int slot;
        const char* name;
    } slots[] = {{0, "uMVPMatrix"},     {1, "uTexMap"},          {2, "uDensity"},
                 {3, "uAlpha"},         {6, "uSaturation"},      {7, "uBrightness"},
                 {8, "uRedSaturation"}, {9, "uGreenSaturation"}, {10, "uBlueSaturation"}};
    for (const auto& s : slots) {
        EXPECT_EQ(shader.getUniform(s.slot), glGetUniformLocation(program, s.name)) << s.name;
    }
    {
        // Slots 4 and 5 stay empty.
        LogCapture log;
        EXPECT_EQ(shader.getUniform(4), 0);
        EXPECT_EQ(shader.getUniform(5), 0);
        EXPECT_EQ(log.messages().size(), 2u);
    }
    EXPECT_EQ(shader.getAttribute(2), glGetAttribLocation(program, "aTexUVBG"));

    brush.setAlphaDensityTextureID(21, 22);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ZERO);
    brush.draw();
    // Blending off, with the blend function set all the same.
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    GLint source = 0;
    GLint destination = 0;
    glGetIntegerv(GL_BLEND_SRC_RGB, &source);
    glGetIntegerv(GL_BLEND_DST_RGB, &destination);
    EXPECT_EQ(source, GL_SRC_ALPHA);
    EXPECT_EQ(destination, GL_ONE_MINUS_SRC_ALPHA);
    expectSamplers(program, {{"uTexMap", kUnset}, {"uDensity", 22}, {"uAlpha", 21}});
    EXPECT_FLOAT_EQ(uniformFloat(program, "uGreenSaturation"), 0.3333f);
}

TEST_F(KNDrawMixWaterBrushTest, SaturatesAboutAGreyWeightedPerChannel) {
    const Rgba density = {204 / 255.0, 102 / 255.0, 51 / 255.0, 102 / 255.0};
    LayerTexture densityTexture(Texel{204, 102, 51, 102});
    LayerTexture shown(Texel{0, 0, 0, 255});
    LayerTexture background(Texel{0, 0, 255, 255});
    KNDrawMixWaterBrush brush;
    brush.initialize(kWidth, kHeight, 0);
    brush.changeBGTextureID(background.id());
    brush.setAlphaDensityTextureID(shown.id(), densityTexture.id());

    // P = sqrt(0.64 · 0.25 + 0.16 · 0.5 + 0.04 · 0.25) = 0.5: (0.95, 0.35, 0.05); the mix
    // colour brush's red-weight-only P would be sqrt(0.84 · 0.25).
    brush.setBrightness(1);
    brush.setSaturation(1.5f);
    brush.setRedSaturation(0.25f);
    brush.setGreenSaturation(0.5f);
    brush.setBlueSaturation(0.25f);
    brush.draw();
    expectRgba(pixel(30, 30), {0.95, 0.35, 0.05, 0.4});

    // Saturation 0 leaves the grey itself; each weight picks its own channel.
    brush.setSaturation(0);
    const double weights[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    const double grey[3] = {0.8, 0.4, 0.2};
    for (int c = 0; c < 3; ++c) {
        brush.setRedSaturation(static_cast<float>(weights[c][0]));
        brush.setGreenSaturation(static_cast<float>(weights[c][1]));
        brush.setBlueSaturation(static_cast<float>(weights[c][2]));
        brush.draw();
        expectRgba(pixel(30, 30), {grey[c], grey[c], grey[c], 0.4});
    }

    // The defaults after initialize: brightness 1.1 (alpha included), saturation 1.2, 0.3333.
    brush.initialize(kWidth, kHeight, 0);
    brush.draw();
    expectRgba(pixel(30, 30), saturated(density, 1.1, 1.2, 0.3333, 0.3333, 0.3333));
    // A grey density stays grey: 0.5 · 1.1 and P ≈ 0.5 · 1.1 · sqrt(0.9999).
    LayerTexture greyTexture(Texel{128, 128, 128, 255});
    brush.setAlphaDensityTextureID(shown.id(), greyTexture.id());
    brush.draw();
    const double g = 128 / 255.0;
    expectRgba(pixel(30, 30), saturated({g, g, g, 1}, 1.1, 1.2, 0.3333, 0.3333, 0.3333));
}

TEST_F(KNDrawMixWaterBrushTest, MixesOverTheFittedBackgroundByTheAlphaImage) {
    // A 2:1 background: red, green, green, blue quarters; the surface shows its middle half.
    namedTexture("bg", 4, 2, texels(4, 2, [](int x, int) {
                     return x == 0   ? Texel{255, 0, 0, 255}
                            : x == 3 ? Texel{0, 0, 255, 255}
                                     : Texel{0, 255, 0, 255};
                 }));
    // Density: bottom row white, top row black, drawn unflipped: row v = 1 at the bottom.
    LayerTexture density(1, 2, {255, 255, 255, 255, 0, 0, 0, 255});
    LayerTexture hidden(Texel{0, 0, 0, 0});
    LayerTexture half(Texel{0, 0, 0, 128});
    LayerTexture shown(Texel{0, 0, 0, 255});
    KNDrawMixWaterBrush brush;
    brush.initialize(kWidth, kHeight, 0);
    brush.setBGTexture("bg", true);
    brush.setAlphaDensityTextureID(hidden.id(), density.id());
    brush.setBrightness(1);
    brush.setSaturation(1);

    // Alpha 0: the fitted background unchanged, green from edge to edge.
    glClearColor(1, 0, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    brush.draw();
    EXPECT_EQ(pixel(1, 10), 0x00FF00FFu);
    EXPECT_EQ(pixel(62, 50), 0x00FF00FFu);

    brush.setAlphaDensityTextureID(shown.id(), density.id());
    brush.draw();
    EXPECT_EQ(pixel(10, 60), 0xFFFFFFFFu);  // texture row 0 at the top
    EXPECT_EQ(pixel(10, 3), 0x000000FFu);

    brush.setAlphaDensityTextureID(half.id(), density.id());
    brush.draw();
    const double a = 128 / 255.0;
    expectRgba(pixel(10, 60), {a, 1, a, 1});
    expectRgba(pixel(10, 3), {0, 1 - a, 0, 1});

    // A new surface forgets the background, bound as it is: it samples black.
    brush.resizeSurface(kWidth, kHeight);
    EXPECT_EQ(brush.getBGTextureID(), kUnset);
    brush.setAlphaDensityTextureID(hidden.id(), density.id());
    brush.draw();
    EXPECT_EQ(pixel(10, 10), 0x000000FFu);
}

TEST_F(KNDrawMixWaterBrushTest, BadInputIsLoggedAndDropped) {
    KNDrawMixWaterBrush brush;
    expectOneLogLineEach(
        {[&] { brush.setBGTexture(nullptr, false); }, [&] { brush.initialize(64, 1e12f, 0); }});
    EXPECT_EQ(brush.getBrightness(), 0.0f);
    EXPECT_EQ(brush.getShaderManager().getProgram(), 0u);
}

}  // namespace
