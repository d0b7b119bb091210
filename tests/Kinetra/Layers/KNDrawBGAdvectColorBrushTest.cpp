#include "Kinetra/Layers/KNDrawBGAdvectColorBrush.h"

#include "tests/Kinetra/Layers/LayerTestSupport.h"
#include "tests/support/GLCallCounter.h"

namespace {

using namespace qam::test;

using Kinetra::KNDrawBGAdvectColorBrush;

constexpr int kSize = 64;

using KNDrawBGAdvectColorBrushTest = TargetLayerTest;

TEST_F(KNDrawBGAdvectColorBrushTest, ScalarFactorsSlotsAndUnits) {
    KNDrawBGAdvectColorBrush brush;
    brush.initialize(kSize, kSize, 0);
    EXPECT_FLOAT_EQ(brush.getNoiseVectorScalar(), 15.625f);
    EXPECT_FLOAT_EQ(brush.getRadialVectorScalar(), 9.2625f);
    brush.setNoiseVectorScalar(2.0f);
    brush.setRadialVectorScalar(2.0f);
    EXPECT_FLOAT_EQ(brush.getNoiseVectorScalar(), 250.0f);
    EXPECT_FLOAT_EQ(brush.getRadialVectorScalar(), 37.05f);

    const unsigned int stone = namedTexture("stone", Texel{128, 128, 128, 255});
    brush.setBGTexture("stone", false);
    brush.setFBOID(31);
    brush.setVelocityRadialTextureID(32, 33);
    Kinetra::KNShaderManager& shader = *brush.getShaderManager();
    const GLuint program = shader.getProgram();
    expectUniformSlots(shader, {"uMVPMatrix", "uTexMap", "uVelocity", "uRadial", "uOriginal",
                                "uNoiseVectorScalar", "uRadialVectorScalar"});
    GLCallCounter calls;
    brush.draw();
    EXPECT_EQ(calls.count("glDrawElements"), 1);
    expectSamplers(program,
                   {{"uTexMap", 31}, {"uVelocity", 32}, {"uRadial", 33}, {"uOriginal", stone}});
    EXPECT_FLOAT_EQ(uniformFloat(program, "uNoiseVectorScalar"), 250.0f);
    EXPECT_TRUE(glIsEnabled(GL_BLEND));

    // A new surface forgets the background only, which then goes to GL unset.
    brush.resizeSurface(32, 32);
    EXPECT_EQ(brush.getFBOID(), 31u);
    brush.draw();
    EXPECT_EQ(boundTexture(3), kUnset);
}

// Inside the field: the previous frame fetched upstream, nothing of the background mixed in.
// Outside: the background, which moves with the quad.
TEST_F(KNDrawBGAdvectColorBrushTest, AdvectsWithoutDriftAndShowsTheBackgroundElsewhere) {
    LayerTexture previous(kSize, kSize, redRamp(), GL_LINEAR);
    // Green ramp up the rows, 4 · y, with nearest filtering: row y reads 4 · y exactly.
    LayerTexture background(kSize, kSize, [](int, int y) {
        return Texel{0, static_cast<uint8_t>(4 * y), 255, 255};
    });
    // Towards +u at full strength in the lower half, no field in the upper half.
    LayerTexture field(kSize, kSize, [](int, int y) {
        return Texel{255, 128, 255, static_cast<uint8_t>(y < 32 ? 255 : 0)};
    });
    LayerTexture still(Texel{128, 128, 0, 255});
    KNDrawBGAdvectColorBrush brush;
    brush.initialize(kSize, kSize, 0);
    brush.setFBOID(previous.id());
    brush.changeBGTextureID(background.id());
    brush.setVelocityRadialTextureID(still.id(), field.id());
    brush.setNoiseVectorScalar(0);
    // 20 times the default: (1 - 0.5) · 10 · 185.25 · 0.0175 · 0.006 = 0.0973.
    brush.setRadialVectorScalar(10);
    brush.draw();

    const double du = 0.5 * 10 * 185.25 * 0.0175 * 0.006;
    for (int x : {4, 20, 40}) {
        const uint32_t p = pixel(x, 10);
        const double u = (x + 0.5) / kSize;
        EXPECT_NEAR(channel(p, 24), byteOf((256 * (u + du) - 2) / 255), kLayerTolerance) << x;
        EXPECT_EQ(channel(p, 16), 0) << x;
        EXPECT_EQ(channel(p, 8), 0) << x;  // the blue background does not come through
        EXPECT_EQ(channel(p, 0), 255) << x;
    }
    // The background rows, (0, 0) at the bottom-left: row y shows green 4 · y.
    EXPECT_PIXEL_NEAR(pixel(20, 40), 0x00A0FFFFu, 1);
    EXPECT_PIXEL_NEAR(pixel(50, 60), 0x00F0FFFFu, 1);

    // The background is fixed to the quad: moved up by 8, row 40 shows texel row 32.
    brush.setTranslate(0, 8, 0);
    mTarget->clearFBOSurface();
    brush.draw();
    EXPECT_PIXEL_NEAR(pixel(20, 48), 0x00A0FFFFu, 1);
    EXPECT_EQ(pixel(20, 4), 0u);
}

TEST_F(KNDrawBGAdvectColorBrushTest, BadInputIsLoggedAndDropped) {
    KNDrawBGAdvectColorBrush brush;
    expectOneLogLineEach({[&] {
        brush.setSize(10, 10);  // builds a quad, but there is still nothing to draw it with
        brush.draw();
    }});
    brush.initialize(kSize, kSize, 0);
    brush.changeBGTextureID(9);
    expectOneLogLineEach(
        {[&] { brush.setBGTexture(nullptr, true); }, [&] { brush.resizeSurface(0.5f, 10); }});
    EXPECT_EQ(brush.getBGTextureID(), 9u);
    GLCallCounter calls;
    brush.draw();
    EXPECT_EQ(calls.count("glDrawElements"), 1);
    EXPECT_EQ(boundTexture(0), kUnset);  // no previous frame handed in yet
}

}  // namespace
