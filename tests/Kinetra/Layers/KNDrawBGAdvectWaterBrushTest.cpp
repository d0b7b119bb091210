#include "Kinetra/Layers/KNDrawBGAdvectWaterBrush.h"

#include <cmath>
#include <limits>

#include "tests/Kinetra/Layers/LayerTestSupport.h"

namespace {

using namespace qam::test;

using Kinetra::KNDrawBGAdvectWaterBrush;

// The advection step: 0.0175 · 0.006.
constexpr double kStep = 0.000105;

// Red ramp across the 64 columns, 4 · x, linearly filtered: at u it reads 256 u - 2.
std::unique_ptr<LayerTexture> rampTexture() {
    return std::make_unique<LayerTexture>(64, 64, redRamp(), GL_LINEAR);
}

double rampAt(double u) {
    return 256 * u - 2;
}

using KNDrawBGAdvectWaterBrushTest = LayerTest;

// The scalars start at the raw factor 1, not 125 and 18.525 times anything; only the
// background coordinates are fitted to the "bg" image.
TEST_F(KNDrawBGAdvectWaterBrushTest, ScalarFactorsAndFittedBackgroundCoordinates) {
    KNDrawBGAdvectWaterBrush brush;
    brush.initialize(64, 64, 0);
    EXPECT_EQ(brush.getNoiseVectorScalar(), 1.0f);
    EXPECT_EQ(brush.getRadialVectorScalar(), 1.0f);
    brush.setNoiseVectorScalar(1);
    brush.setRadialVectorScalar(1);
    EXPECT_FLOAT_EQ(brush.getNoiseVectorScalar(), 125.0f);
    EXPECT_FLOAT_EQ(brush.getRadialVectorScalar(), 18.525f);
    EXPECT_TRUE(brush.getBGMesh().vertex.empty());
    expectPoints(brush.getBGMesh().uv, {{0, 1}, {1, 1}, {0, 0}, {1, 0}});

    // A 2:1 background on a square surface is cropped to its middle half.
    const unsigned int bg = namedTexture("bg", 128, 64, std::vector<uint8_t>(128 * 64 * 4, 0));
    brush.setBGTexture("bg", false);
    EXPECT_EQ(brush.getBGTextureID(), bg);
    expectPoints(brush.getBGMesh().uv, {{0.25f, 1}, {0.75f, 1}, {0.25f, 0}, {0.75f, 0}});
    expectPoints(brush.getMesh().uv, {{0, 1}, {1, 1}, {0, 0}, {1, 0}});
    // A new surface is fitted again, and the background must be handed in again.
    brush.resizeSurface(128, 64);
    EXPECT_EQ(brush.getBGTextureID(), kUnset);
    expectPoints(brush.getBGMesh().uv, {{0, 1}, {1, 1}, {0, 0}, {1, 0}});
}

TEST_F(KNDrawBGAdvectWaterBrushTest, SlotsUnitsValuesAndBlending) {
    KNDrawBGAdvectWaterBrush brush;
    brush.initialize(kWidth, kHeight, 0);
    Kinetra::KNShaderManager& shader = brush.getShaderManager();
    const GLuint program = shader.getProgram();
    expectUniformSlots(shader, {"uMVPMatrix", "uTexMap", "uVelocity", "uRadial", "uOriginal",
                                "uNoiseVectorScalar", "uRadialVectorScalar"});
    const char* attributes[] = {"aPosition", "aTexUV", "aTexUVBG"};
    for (int id = 0; id < 3; ++id) {
        EXPECT_EQ(shader.getAttribute(id), glGetAttribLocation(program, attributes[id]));
    }

    brush.setFBOID(11);
    brush.setVelocityRadialTextureID(12, 13);
    glEnable(GL_BLEND);
    brush.setNoiseVectorScalar(1);
    brush.draw();
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    // The unset background is bound as it is.
    expectSamplers(program,
                   {{"uTexMap", 11}, {"uVelocity", 12}, {"uRadial", 13}, {"uOriginal", kUnset}});
    EXPECT_EQ(uniformFloat(program, "uNoiseVectorScalar"), 125.0f);
    EXPECT_EQ(uniformFloat(program, "uRadialVectorScalar"), 1.0f);
    GLint enabled = 1;
    glGetVertexAttribiv(static_cast<GLuint>(shader.getAttribute(2)), GL_VERTEX_ATTRIB_ARRAY_ENABLED,
                        &enabled);
    EXPECT_EQ(enabled, 0);
}

TEST_F(KNDrawBGAdvectWaterBrushTest, ShowsTheBackgroundUprightWhereNoFieldIs) {
    // Bottom row red and green, top row blue and white; half transparent, written as it is.
    LayerTexture background(2, 2,
                            {255, 0, 0, 128, 0, 255, 0, 128, 0, 0, 255, 128, 255, 255, 255, 128});
    LayerTexture noField(Texel{255, 255, 255, 0});
    KNDrawBGAdvectWaterBrush brush;
    brush.initialize(kWidth, kHeight, 0);
    brush.changeBGTextureID(background.id());
    brush.setVelocityRadialTextureID(noField.id(), noField.id());
    glClearColor(1, 1, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    brush.draw();
    EXPECT_EQ(pixel(5, 5), 0xFF000080u);
    EXPECT_EQ(pixel(60, 5), 0x00FF0080u);
    EXPECT_EQ(pixel(5, 60), 0x0000FF80u);
    EXPECT_EQ(pixel(60, 60), 0xFFFFFF80u);
}

TEST_F(KNDrawBGAdvectWaterBrushTest, DriftsThreePercentAFrameTowardsTheBackground) {
    LayerTexture red(Texel{255, 0, 0, 255});
    LayerTexture blue(Texel{0, 0, 255, 255});
    // A field of no direction (0.5 in 8 bits is 128 / 255, close enough to move nothing).
    LayerTexture still(Texel{128, 128, 255, 255});
    KNDrawBGAdvectWaterBrush brush;
    brush.initialize(kWidth, kHeight, 0);
    brush.changeBGTextureID(blue.id());
    brush.setVelocityRadialTextureID(still.id(), still.id());

    // Two targets in turn, each frame reading the one before: red falls and blue rises by 3 %
    // of the gap a frame, each frame rounded to a byte. Ten frames tell 3 % from 3.5 % (red
    // 188 against 179).
    std::unique_ptr<Kinetra::KNFBO> frames[2];
    GLuint previous = red.id();
    double r = 255;
    double b = 0;
    for (int n = 1; n <= 10; ++n) {
        frames[n % 2] = boundTarget(kWidth, kHeight);
        brush.setFBOID(previous);
        brush.draw();
        r = std::round(r * 0.97);
        b = std::round(b * 0.97 + 0.03 * 255);
        const uint32_t p = pixel(30, 30);
        EXPECT_NEAR(channel(p, 24), r, 1) << "frame " << n;
        EXPECT_NEAR(channel(p, 8), b, 1) << "frame " << n;
        EXPECT_EQ(channel(p, 0), 255);
        previous = frames[n % 2]->getFBOTexture();
    }
    EXPECT_NEAR(r, 188, 1);
}

TEST_F(KNDrawBGAdvectWaterBrushTest, AdvectsAlongTheFieldAndTheNoise) {
    auto ramp = rampTexture();
    LayerTexture black(Texel{0, 0, 0, 255});
    // Direction +x at full strength; no noise.
    LayerTexture towardsX(Texel{255, 128, 255, 255});
    LayerTexture halfStrength(Texel{255, 128, 128, 255});
    LayerTexture still(Texel{128, 128, 255, 255});
    LayerTexture noiseX(Texel{255, 128, 0, 255});
    KNDrawBGAdvectWaterBrush brush;
    brush.initialize(kWidth, kHeight, 0);
    brush.setFBOID(ramp->id());
    brush.changeBGTextureID(black.id());
    const double u = 20.5 / kWidth;

    // Radial: 0.5 · 10 · 18.525 s · strength · step.
    brush.setRadialVectorScalar(10);
    brush.setVelocityRadialTextureID(still.id(), towardsX.id());
    brush.draw();
    const double radialShift = 0.5 * 10 * 185.25 * kStep;
    EXPECT_NEAR(channel(pixel(20, 30), 24), 0.97 * rampAt(u + radialShift), kLayerTolerance);
    brush.setVelocityRadialTextureID(still.id(), halfStrength.id());
    brush.draw();
    EXPECT_NEAR(channel(pixel(20, 30), 24), 0.97 * rampAt(u + radialShift * 128 / 255),
                kLayerTolerance);

    // Noise: 0.5 · 125 s · strength · step, with a field of no direction.
    brush.setNoiseVectorScalar(8);
    brush.setVelocityRadialTextureID(noiseX.id(), still.id());
    brush.draw();
    EXPECT_NEAR(channel(pixel(20, 30), 24), 0.97 * rampAt(u + 0.5 * 1000 * kStep), kLayerTolerance);
    // Without the advection it would read the ramp where it stands.
    EXPECT_GT(std::abs(0.97 * rampAt(u + 0.5 * 1000 * kStep) - 0.97 * rampAt(u)), 10.0);
}

TEST_F(KNDrawBGAdvectWaterBrushTest, ReadsTheNoiseWhereTheBackgroundIs) {
    auto ramp = rampTexture();
    LayerTexture still(Texel{128, 128, 255, 255});
    // Noise pushing +x in the left quarter of the image only.
    LayerTexture noise(4, 1,
                       {255, 128, 0, 255, 128, 128, 0, 255, 128, 128, 0, 255, 128, 128, 0, 255});
    KNDrawBGAdvectWaterBrush brush;
    brush.initialize(kWidth, kHeight, 0);
    brush.setFBOID(ramp->id());
    brush.setNoiseVectorScalar(8);
    brush.setVelocityRadialTextureID(noise.id(), still.id());
    const double u = 8.5 / kWidth;
    const double pushed = 0.97 * rampAt(u + 0.5 * 1000 * kStep);

    LayerTexture black(Texel{0, 0, 0, 255});
    brush.changeBGTextureID(black.id());
    brush.draw();
    EXPECT_NEAR(channel(pixel(8, 30), 24), pushed, kLayerTolerance);

    // A 2:1 background shows its middle half: column 8 is over the image's second quarter,
    // where the noise is still, although the layer's own coordinates are in the first.
    namedTexture("bg", 128, 64, std::vector<uint8_t>(128 * 64 * 4, 0));
    brush.setBGTexture("bg", false);
    brush.draw();
    EXPECT_NEAR(channel(pixel(8, 30), 24), 0.97 * rampAt(u), kLayerTolerance);
}

TEST_F(KNDrawBGAdvectWaterBrushTest, BadInputIsLoggedAndDropped) {
    KNDrawBGAdvectWaterBrush brush;
    expectOneLogLineEach({[&] { brush.setBGTexture(nullptr, true); },
                          [&] { brush.initialize(std::numeric_limits<float>::infinity(), 64, 0); },
                          [&] { brush.resizeSurface(64, -1); }, [&] { brush.setSize(0, 0); }});
    EXPECT_EQ(brush.getBGTextureID(), kUnset);
    EXPECT_EQ(brush.getSurfaceWidth(), 0);
    EXPECT_TRUE(brush.getMesh().vertex.empty());
    // The transform setters always reach the matrices.
    brush.setTranslate(5, 6, 0);
    EXPECT_EQ(brush.getMVPManager().getModelMatrix()[3][0], 5.0f);
}

}  // namespace
