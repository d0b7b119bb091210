#include "Kinetra/Layers/KNDrawAdvectColorBrush.h"

#include "Kinetra/Core/KNMesh.h"
#include "tests/Kinetra/Layers/LayerTestSupport.h"
#include "tests/support/GLCallCounter.h"

namespace {

using namespace qam::test;

using Kinetra::KNDrawAdvectColorBrush;

constexpr int kSize = 64;

// The ramp of redRamp() read at u, as a shader value.
double rampAt(double u) {
    return (256.0 * u - 2.0) / 255.0;
}

// The horizontal shift the field gives, from the bytes of the radial and velocity texels.
double shiftU(int radialRed, int radialBlue, int velocityRed, float radialScalar,
              float noiseScalar) {
    return ((unit(radialRed) - 0.5) * 10.0 * radialScalar +
            (unit(velocityRed) - 0.5) * noiseScalar) *
           unit(radialBlue) * 0.0021;
}

using KNDrawAdvectColorBrushTest = TargetLayerTest;

// The scalars' factors (125 and 18.525) and the defaults initialize writes over them; a new
// surface forgets the background and the pattern only.
TEST_F(KNDrawAdvectColorBrushTest, ScalarFactorsAndWhatANewSurfaceForgets) {
    KNDrawAdvectColorBrush brush;
    brush.setNoiseVectorScalar(1.0f);
    brush.setRadialVectorScalar(1.0f);
    EXPECT_FLOAT_EQ(brush.getNoiseVectorScalar(), 125.0f);
    EXPECT_FLOAT_EQ(brush.getRadialVectorScalar(), 18.525f);
    brush.initialize(720.9f, 1280.0f, 7);
    EXPECT_EQ(brush.getSurfaceWidth(), 720);
    EXPECT_FLOAT_EQ(brush.getNoiseVectorScalar(), 15.625f);
    EXPECT_FLOAT_EQ(brush.getRadialVectorScalar(), 9.2625f);

    // By name through the texture manager; an unknown name stores what it answers, 0.
    const unsigned int sky = namedTexture("sky", Texel{255, 255, 255, 255});
    brush.setBGTexture("sky", true);
    EXPECT_EQ(brush.getBackgroundTextureID(), sky);
    char pattern[] = "pattern";
    brush.setPatternColorTexture(pattern, false);
    EXPECT_EQ(brush.getPatternColorTextureID(), 0u);

    brush.setFBOID(11);
    brush.setVelocityRadialTextureID(12, 13, 14);
    brush.resizeSurface(640, 480);
    EXPECT_EQ(brush.getBackgroundTextureID(), kUnset);
    EXPECT_EQ(brush.getPatternColorTextureID(), kUnset);
    EXPECT_EQ(brush.getFBOID(), 11u);
    EXPECT_EQ(brush.getRadialColorTextureID(), 14u);
    EXPECT_FLOAT_EQ(brush.getMesh()->vertex[1].x, 640.0f);
}

TEST_F(KNDrawAdvectColorBrushTest, SlotsUnitsAndUniforms) {
    KNDrawAdvectColorBrush brush;
    brush.initialize(720.9f, 64, 0);
    Kinetra::KNShaderManager& shader = *brush.getShaderManager();
    const GLuint program = shader.getProgram();
    expectUniformSlots(shader, {"uMVPMatrix", "uTexMap", "uVelocity", "uRadial", "uOriginal",
                                "uRadialColor", "uNoiseVectorScalar", "uRadialVectorScalar",
                                "uBackground", "uInvScreenX", "uInvScreenY"});
    EXPECT_EQ(shader.getUniform(11), -1);  // registered though the program has no such uniform
    EXPECT_EQ(shader.getAttribute(0), glGetAttribLocation(program, "aPosition"));
    EXPECT_EQ(shader.getAttribute(1), glGetAttribLocation(program, "aTexUV"));

    brush.setFBOID(21);
    brush.setVelocityRadialTextureID(22, 23, 24);
    brush.setBackgroundTextureID(25);
    brush.changePatternColorTextureID(26);
    glDisable(GL_BLEND);
    GLCallCounter calls;
    brush.draw();
    EXPECT_EQ(calls.count("glDrawElements"), 1);
    EXPECT_EQ(calls.count("glEnableVertexAttribArray"), 2);
    EXPECT_EQ(calls.count("glDisableVertexAttribArray"), 2);
    expectSamplers(program, {{"uTexMap", 21},
                             {"uVelocity", 22},
                             {"uRadial", 23},
                             {"uOriginal", 26},
                             {"uRadialColor", 24},
                             {"uBackground", 25}});
    // Blending on, source alpha over the rest.
    EXPECT_TRUE(glIsEnabled(GL_BLEND));
    GLint source = 0;
    GLint destination = 0;
    glGetIntegerv(GL_BLEND_SRC_RGB, &source);
    glGetIntegerv(GL_BLEND_DST_ALPHA, &destination);
    EXPECT_EQ(source, GL_SRC_ALPHA);
    EXPECT_EQ(destination, GL_ONE_MINUS_SRC_ALPHA);

    // The reciprocal of the whole-pixel width; the scalars as stored.
    EXPECT_FLOAT_EQ(uniformFloat(program, "uInvScreenX"), 1.0f / 720.0f);
    EXPECT_FLOAT_EQ(uniformFloat(program, "uInvScreenY"), 1.0f / 64.0f);
    EXPECT_FLOAT_EQ(uniformFloat(program, "uNoiseVectorScalar"), 15.625f);
    EXPECT_FLOAT_EQ(uniformFloat(program, "uRadialVectorScalar"), 9.2625f);
}

// Where the field is present the previous frame is fetched from upstream along the field,
// drifts towards the pattern by 0.75 % and takes the radial colour over by its alpha.
TEST_F(KNDrawAdvectColorBrushTest, AdvectsAlongTheFieldAndDriftsTowardsThePattern) {
    LayerTexture previous(kSize, kSize, redRamp(), GL_LINEAR);
    LayerTexture field(Texel{255, 128, 255, 255});  // towards +u at full strength
    LayerTexture still(Texel{128, 128, 0, 255});    // noise: nearly no direction
    LayerTexture pattern(Texel{0, 0, 255, 255});
    LayerTexture noColour(Texel{0, 0, 0, 0});
    KNDrawAdvectColorBrush brush;
    brush.initialize(kSize, kSize, 0);
    brush.setFBOID(previous.id());
    brush.setVelocityRadialTextureID(still.id(), field.id(), noColour.id());
    brush.changePatternColorTextureID(pattern.id());
    brush.draw();

    // Pixel x samples the ramp at u + 0.0972..., about six pixels upstream.
    const double du = shiftU(255, 255, 128, 9.2625f, 15.625f);
    EXPECT_NEAR(du, 0.0973, 0.0001);
    for (int x : {4, 20, 40}) {
        const double u = (x + 0.5) / kSize;
        const uint32_t p = pixel(x, 32);
        EXPECT_NEAR(channel(p, 24), byteOf(rampAt(u + du) * 0.9925), kLayerTolerance) << x;
        EXPECT_EQ(channel(p, 16), 0);
        // 255 · 0.0075 = 1.9: one step either way still tells it from no drift (0) and from
        // the water brush's 3 % (8).
        EXPECT_NEAR(channel(p, 8), 2, 1) << x;
        EXPECT_EQ(channel(p, 0), 255);
    }

    // The field's blue is its strength: at zero nothing moves, only the drift remains.
    LayerTexture weak(Texel{255, 128, 0, 255});
    brush.setVelocityRadialTextureID(still.id(), weak.id(), noColour.id());
    brush.draw();
    EXPECT_NEAR(channel(pixel(20, 32), 24), byteOf(rampAt(20.5 / kSize) * 0.9925), kLayerTolerance);

    // The noise field moves as well, scaled by its own scalar: full red, no radial direction.
    LayerTexture neutral(Texel{128, 128, 255, 255});
    LayerTexture east(Texel{255, 128, 0, 255});
    brush.setVelocityRadialTextureID(east.id(), neutral.id(), noColour.id());
    brush.setNoiseVectorScalar(0.5f);  // 62.5
    brush.draw();
    const double noiseShift = shiftU(128, 255, 255, 9.2625f, 62.5f);
    EXPECT_NEAR(noiseShift, 0.0660, 0.0001);  // 0.5 · 62.5 · 0.0021, plus 0.0004 from 128/255
    EXPECT_NEAR(channel(pixel(20, 32), 24), byteOf(rampAt(20.5 / kSize + noiseShift) * 0.9925),
                kLayerTolerance);
}

TEST_F(KNDrawAdvectColorBrushTest, LaysTheBrightenedRadialColourOverByItsAlpha) {
    LayerTexture black(Texel{0, 0, 0, 255});
    LayerTexture field(Texel{128, 128, 0, 255});
    LayerTexture colour(Texel{102, 51, 0, 128});
    KNDrawAdvectColorBrush brush;
    brush.initialize(kSize, kSize, 0);
    brush.setFBOID(black.id());
    brush.changePatternColorTextureID(black.id());
    brush.setVelocityRadialTextureID(black.id(), field.id(), colour.id());
    brush.draw();

    // rgb · (2 - a) = (0.599, 0.300, 0) laid over black by a = 0.502; the result's alpha is
    // 1 · (1 - a) + a · a = 0.750, and blending onto the cleared target multiplies by it.
    const double a = unit(128);
    const double alpha = (1 - a) + a * a;
    const uint32_t p = pixel(32, 32);
    EXPECT_NEAR(channel(p, 24), byteOf(unit(102) * (2 - a) * a * alpha), kLayerTolerance);
    EXPECT_NEAR(channel(p, 16), byteOf(unit(51) * (2 - a) * a * alpha), kLayerTolerance);
    EXPECT_EQ(channel(p, 8), 0);
    EXPECT_NEAR(channel(p, 0), byteOf(alpha * alpha), kLayerTolerance);
    EXPECT_NEAR(channel(p, 24), 58, 1);  // worked by hand: 0.599 · 0.502 · 0.750 · 255
}

TEST_F(KNDrawAdvectColorBrushTest, ShowsAScreenFixedBackgroundWhereNoFieldIs) {
    LayerTexture pattern(Texel{200, 0, 0, 255});
    LayerTexture background(kSize, kSize, [](int x, int) {
        return x < kSize / 2 ? Texel{0, 255, 0, 255} : Texel{0, 0, 255, 255};
    });
    LayerTexture none(Texel{255, 255, 255, 0});
    KNDrawAdvectColorBrush brush;
    brush.initialize(kSize, kSize, 0);
    brush.setFBOID(pattern.id());
    brush.setVelocityRadialTextureID(none.id(), none.id(), none.id());
    brush.changePatternColorTextureID(pattern.id());
    brush.setBackgroundTextureID(background.id());
    brush.draw();
    // mix(pattern, background, 0.6): (80, 153, 0) on the left, (80, 0, 153) on the right.
    EXPECT_PIXEL_NEAR(pixel(8, 10), 0x509900FFu, kLayerTolerance);
    EXPECT_PIXEL_NEAR(pixel(40, 50), 0x500099FFu, kLayerTolerance);

    // Moving the quad moves the pattern, not the background: it stays with the screen.
    brush.setTranslate(16, 0, 0);
    mTarget->clearFBOSurface();
    brush.draw();
    EXPECT_EQ(pixel(8, 10), 0u);
    EXPECT_PIXEL_NEAR(pixel(24, 10), 0x509900FFu, kLayerTolerance);
    EXPECT_PIXEL_NEAR(pixel(40, 10), 0x500099FFu, kLayerTolerance);
}

TEST_F(KNDrawAdvectColorBrushTest, BadInputIsLoggedAndDroppedUnsetTexturesAreBoundAsTheyAre) {
    KNDrawAdvectColorBrush brush;
    expectOneLogLineEach(
        {[&] { brush.initialize(0, 64, 0); }, [&] { brush.initialize(64, -1.0f / 0.0f, 0); }});
    EXPECT_EQ(brush.getMesh(), nullptr);

    brush.initialize(kSize, kSize, 0);
    brush.setBackgroundTextureID(7);
    brush.changePatternColorTextureID(8);
    expectOneLogLineEach({[&] { brush.setBGTexture(nullptr, false); },
                          [&] { brush.setPatternColorTexture(nullptr, false); },
                          [&] { brush.setSize(0, 0); }, [&] { brush.resizeSurface(3e9f, 10); }});
    EXPECT_EQ(brush.getBackgroundTextureID(), 7u);
    EXPECT_EQ(brush.getPatternColorTextureID(), 8u);
    EXPECT_EQ(brush.getSurfaceWidth(), kSize);
    EXPECT_EQ(brush.getMesh()->index.size(), 4u);

    brush.setFBOID(kUnset);
    brush.setVelocityRadialTextureID(0, 0, 0);
    GLCallCounter calls;
    brush.draw();
    EXPECT_EQ(calls.count("glDrawElements"), 1);
    EXPECT_EQ(boundTexture(0), kUnset);
    EXPECT_EQ(boundTexture(2), 0u);
}

}  // namespace
