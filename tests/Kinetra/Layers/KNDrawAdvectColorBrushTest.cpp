#include "Kinetra/Layers/KNDrawAdvectColorBrush.h"

#include <GLES2/gl2.h>

#include <cstdint>
#include <string>
#include <vector>

#include "Kinetra/Core/KNMVPManager.h"
#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNShaderManager.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "examples/common/Png.h"
#include "tests/Kinetra/Layers/LayerTestSupport.h"
#include "tests/support/GLCallCounter.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace {

using Kinetra::KNDrawAdvectColorBrush;
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

// Red ramp across the columns, 4 · x, opaque: linearly filtered at u it reads 256 u - 2.
std::vector<uint8_t> redRamp() {
    return texels(kSize, kSize, [](int x, int) {
        return Texel{static_cast<uint8_t>(4 * x), 0, 0, 255};
    });
}

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

// The texture bound to `unit` as GL reports it.
GLuint boundTexture(GLenum unit) {
    glActiveTexture(GL_TEXTURE0 + unit);
    GLint name = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &name);
    return static_cast<GLuint>(name);
}

float uniformFloat(GLuint program, const char* name) {
    float value = 0;
    glGetUniformfv(program, glGetUniformLocation(program, name), &value);
    return value;
}

class KNDrawAdvectColorBrushTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        KNTextureManager::ReleaseInstance();
    }
    void TearDown() override { KNTextureManager::ReleaseInstance(); }
};

TEST_F(KNDrawAdvectColorBrushTest, DefaultsSettersAndTheirScalings) {
    KNDrawAdvectColorBrush brush;
    EXPECT_EQ(brush.getMesh(), nullptr);
    EXPECT_EQ(brush.getMVPManager(), nullptr);
    EXPECT_EQ(brush.getShaderManager(), nullptr);
    EXPECT_EQ(brush.getFBOID(), kUnset);
    EXPECT_EQ(brush.getVelocityTextureID(), 0u);
    EXPECT_EQ(brush.getRadialTextureID(), 0u);
    EXPECT_EQ(brush.getRadialColorTextureID(), 0u);
    EXPECT_EQ(brush.getBackgroundTextureID(), kUnset);
    EXPECT_EQ(brush.getPatternColorTextureID(), kUnset);
    EXPECT_EQ(brush.getSurfaceWidth(), 0);
    EXPECT_EQ(brush.getNoiseVectorScalar(), 0.0f);
    EXPECT_EQ(brush.getRadialVectorScalar(), 0.0f);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(brush.getColor()[i], 1.0f);
    }

    // Transforms before initialize have no matrices to go to.
    brush.setTranslate(5, 5, 0);
    brush.setRotate(90, 0, 0, 1);
    brush.setScale(2, 2, 2);
    EXPECT_EQ(brush.getMVPManager(), nullptr);

    brush.setNoiseVectorScalar(1.0f);
    brush.setRadialVectorScalar(1.0f);
    EXPECT_FLOAT_EQ(brush.getNoiseVectorScalar(), 125.0f);
    EXPECT_FLOAT_EQ(brush.getRadialVectorScalar(), 18.525f);
    brush.setColor(0.1f, 0.2f, 0.3f, 0.4f);
    EXPECT_EQ(brush.getColor()[3], 0.4f);

    brush.initialize(720.9f, 1280.0f, 7);
    EXPECT_EQ(brush.getSurfaceWidth(), 720);
    EXPECT_EQ(brush.getSurfaceHeight(), 1280);
    EXPECT_FLOAT_EQ(brush.getNoiseVectorScalar(), 15.625f);
    EXPECT_FLOAT_EQ(brush.getRadialVectorScalar(), 9.2625f);
    EXPECT_EQ(brush.getColor()[3], 0.4f);

    brush.setFBOID(11);
    brush.setVelocityRadialTextureID(12, 13, 14);
    brush.setBackgroundTextureID(15);
    brush.changePatternColorTextureID(16);
    EXPECT_EQ(brush.getFBOID(), 11u);
    EXPECT_EQ(brush.getVelocityTextureID(), 12u);
    EXPECT_EQ(brush.getRadialTextureID(), 13u);
    EXPECT_EQ(brush.getRadialColorTextureID(), 14u);
    EXPECT_EQ(brush.getBackgroundTextureID(), 15u);
    EXPECT_EQ(brush.getPatternColorTextureID(), 16u);

    // By name through the texture manager; an unknown name stores what it answers, 0.
    const unsigned char white[4] = {255, 255, 255, 255};
    const unsigned int sky = KNTextureManager::getInstancePtr()->setTexture(
        "sky", const_cast<unsigned char*>(white), 1, 1);
    brush.setBGTexture("sky", true);
    EXPECT_EQ(brush.getBackgroundTextureID(), sky);
    char pattern[] = "pattern";
    brush.setPatternColorTexture(pattern, false);
    EXPECT_EQ(brush.getPatternColorTextureID(), 0u);

    // A new surface forgets the background and the pattern, nothing else.
    brush.resizeSurface(640, 480);
    EXPECT_EQ(brush.getBackgroundTextureID(), kUnset);
    EXPECT_EQ(brush.getPatternColorTextureID(), kUnset);
    EXPECT_EQ(brush.getFBOID(), 11u);
    EXPECT_EQ(brush.getRadialColorTextureID(), 14u);
    EXPECT_EQ(brush.getSurfaceWidth(), 640);
    EXPECT_FLOAT_EQ(brush.getMesh()->vertex[1].x, 640.0f);

    // initialize again writes the scalars' defaults over the setters' values.
    brush.setNoiseVectorScalar(1.0f);
    brush.initialize(64, 64, 0);
    EXPECT_FLOAT_EQ(brush.getNoiseVectorScalar(), 15.625f);
}

TEST_F(KNDrawAdvectColorBrushTest, RegistersItsSlotsAndBindsItsUnits) {
    KNDrawAdvectColorBrush brush;
    brush.initialize(720.9f, 64, 0);
    Kinetra::KNShaderManager& shader = *brush.getShaderManager();
    const GLuint program = shader.getProgram();
    ASSERT_NE(program, 0u);
    const char* slots[] = {
        "uMVPMatrix",  "uTexMap",      "uVelocity",          "uRadial",
        "uOriginal",   "uRadialColor", "uNoiseVectorScalar", "uRadialVectorScalar",
        "uBackground", "uInvScreenX",  "uInvScreenY"};
    for (int i = 0; i < 11; ++i) {
        EXPECT_EQ(shader.getUniform(i), glGetUniformLocation(program, slots[i])) << slots[i];
        EXPECT_GE(shader.getUniform(i), 0) << slots[i];
    }
    // Registered though the program has no such uniform.
    EXPECT_EQ(shader.getUniform(11), -1);
    EXPECT_EQ(shader.getAttribute(0), glGetAttribLocation(program, "aPosition"));
    EXPECT_EQ(shader.getAttribute(1), glGetAttribLocation(program, "aTexUV"));

    brush.setFBOID(21);
    brush.setVelocityRadialTextureID(22, 23, 24);
    brush.setBackgroundTextureID(25);
    brush.changePatternColorTextureID(26);
    glDisable(GL_BLEND);
    qam::test::GLCallCounter calls;
    brush.draw();
    EXPECT_EQ(calls.count("glDrawElements"), 1);
    EXPECT_EQ(calls.count("glActiveTexture"), 6);
    EXPECT_EQ(calls.count("glEnableVertexAttribArray"), 2);
    EXPECT_EQ(calls.count("glDisableVertexAttribArray"), 2);

    // Unit by unit, as GL holds them after the draw; blending stays on.
    const GLuint units[] = {21, 22, 23, 26, 24, 25};
    for (GLenum unit = 0; unit < 6; ++unit) {
        EXPECT_EQ(boundTexture(unit), units[unit]) << "unit " << unit;
    }
    const char* samplers[] = {"uTexMap",   "uVelocity",    "uRadial",
                              "uOriginal", "uRadialColor", "uBackground"};
    for (GLint unit = 0; unit < 6; ++unit) {
        GLint value = -1;
        glGetUniformiv(program, glGetUniformLocation(program, samplers[unit]), &value);
        EXPECT_EQ(value, unit) << samplers[unit];
    }
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

    // After a new surface the forgotten textures go to GL unset, as they are.
    brush.resizeSurface(64, 64);
    brush.draw();
    EXPECT_EQ(boundTexture(3), kUnset);
    EXPECT_EQ(boundTexture(5), kUnset);
    EXPECT_EQ(boundTexture(0), 21u);
}

// Where the field is present the previous frame is fetched from upstream along the field,
// drifts towards the pattern by 0.75 % and takes the radial colour over by its alpha.
TEST_F(KNDrawAdvectColorBrushTest, AdvectsAlongTheFieldAndDriftsTowardsThePattern) {
    auto target = qam::test::boundTarget(kSize, kSize);
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
    auto target = qam::test::boundTarget(kSize, kSize);
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
    auto target = qam::test::boundTarget(kSize, kSize);
    LayerTexture pattern(Texel{200, 0, 0, 255});
    LayerTexture background(
        kSize, kSize, texels(kSize, kSize, [](int x, int) {
            return x < kSize / 2 ? Texel{0, 255, 0, 255} : Texel{0, 0, 255, 255};
        }));
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
    target->clearFBOSurface();
    brush.draw();
    EXPECT_EQ(pixel(8, 10), 0u);
    EXPECT_PIXEL_NEAR(pixel(24, 10), 0x509900FFu, kLayerTolerance);
    EXPECT_PIXEL_NEAR(pixel(40, 10), 0x500099FFu, kLayerTolerance);
}

// One frame with every input in use: a ramp advected by a field that covers the middle band,
// a radial colour over part of it, the background around it.
class AdvectFrame {
  public:
    explicit AdvectFrame(KNDrawAdvectColorBrush& brush)
        : mPrevious(kSize, kSize, redRamp(), GL_LINEAR),
          mField(kSize, kSize,
                 texels(kSize, kSize,
                        [](int, int y) {
                            const bool band = y >= 16 && y < 48;
                            return Texel{255, 128, 255, static_cast<uint8_t>(band ? 255 : 0)};
                        })),
          mNoise(Texel{128, 200, 0, 255}),
          mColour(kSize, kSize,
                  texels(kSize, kSize,
                         [](int x, int) {
                             return Texel{0, 180, 90, static_cast<uint8_t>(x >= 48 ? 160 : 0)};
                         })),
          mPattern(Texel{40, 40, 120, 255}),
          mBackground(kSize, kSize,
                      texels(kSize, kSize,
                             [](int, int y) {
                                 return Texel{static_cast<uint8_t>(4 * y), 0, 0, 255};
                             }),
                      GL_LINEAR) {
        brush.setFBOID(mPrevious.id());
        brush.setVelocityRadialTextureID(mNoise.id(), mField.id(), mColour.id());
        brush.changePatternColorTextureID(mPattern.id());
        brush.setBackgroundTextureID(mBackground.id());
    }
    // The context that owned the textures is gone.
    void forget() {
        for (LayerTexture* t : {&mPrevious, &mField, &mNoise, &mColour, &mPattern, &mBackground}) {
            t->forget();
        }
    }

  private:
    LayerTexture mPrevious;
    LayerTexture mField;
    LayerTexture mNoise;
    LayerTexture mColour;
    LayerTexture mPattern;
    LayerTexture mBackground;
};

std::vector<uint8_t> drawFrame(KNDrawAdvectColorBrush& brush) {
    auto target = qam::test::boundTarget(kSize, kSize);
    AdvectFrame inputs(brush);
    brush.draw();
    return qam::readFramebuffer(kSize, kSize).rgba;
}

TEST_F(KNDrawAdvectColorBrushTest, DrawsTheSameFrameAfterALostContext) {
    KNDrawAdvectColorBrush brush;
    brush.initialize(kSize, kSize, 0);
    const std::vector<uint8_t> before = drawFrame(brush);
    // Rows inside and outside the band differ: both branches are in the frame.
    EXPECT_NE(before[(8 * kSize + 8) * 4], before[(32 * kSize + 8) * 4]);

    std::vector<uint8_t> after;
    {
        auto target = qam::test::boundTarget(kSize, kSize);
        AdvectFrame inputs(brush);
        loseContext();
        target->contextChanged();
        inputs.forget();
        brush.contextChanged();
        EXPECT_EQ(brush.getShaderManager()->getProgram(), 0u);
    }
    brush.initialize(kSize, kSize, 0);
    after = drawFrame(brush);
    EXPECT_EQ(after, before);
}

TEST_F(KNDrawAdvectColorBrushTest, BadInputIsLoggedAndDropped) {
    auto target = qam::test::boundTarget(kSize, kSize);
    qam::test::LogCapture log;
    {
        KNDrawAdvectColorBrush brush;
        qam::test::GLCallCounter calls;
        brush.draw();
        EXPECT_EQ(calls.count("glDrawElements"), 0);
        EXPECT_EQ(calls.count("glUseProgram"), 0);
        brush.initialize(0, 64, 0);
        brush.initialize(64, -1.0f / 0.0f, 0);
        EXPECT_EQ(brush.getMesh(), nullptr);
        EXPECT_EQ(brush.getSurfaceWidth(), 0);
        brush.draw();
        EXPECT_EQ(calls.count("glDrawElements"), 0);
    }
    EXPECT_EQ(log.messages().size(), 4u);

    KNDrawAdvectColorBrush brush;
    brush.initialize(kSize, kSize, 0);
    brush.setBackgroundTextureID(7);
    brush.changePatternColorTextureID(8);
    const size_t logged = log.messages().size();
    brush.setBGTexture(nullptr, false);
    brush.setPatternColorTexture(nullptr, false);
    brush.setSize(0, 0);
    brush.resizeSurface(3e9f, 10);
    EXPECT_EQ(log.messages().size(), logged + 4);
    EXPECT_EQ(brush.getBackgroundTextureID(), 7u);
    EXPECT_EQ(brush.getPatternColorTextureID(), 8u);
    EXPECT_EQ(brush.getSurfaceWidth(), kSize);
    EXPECT_EQ(brush.getMesh()->index.size(), 4u);

    // Unset and zero textures are bound as they are and the draw goes ahead.
    brush.setFBOID(kUnset);
    brush.setVelocityRadialTextureID(0, 0, 0);
    qam::test::GLCallCounter calls;
    brush.draw();
    EXPECT_EQ(calls.count("glDrawElements"), 1);
    EXPECT_EQ(boundTexture(0), kUnset);
    EXPECT_EQ(boundTexture(2), 0u);
    EXPECT_EQ(log.messages().size(), logged + 4);
}

TEST_F(KNDrawAdvectColorBrushTest, LeavesAFullSizeFrameToLookAt) {
    constexpr int kFrameWidth = 1080;
    constexpr int kFrameHeight = 1920;
    auto target = qam::test::boundTarget(kFrameWidth, kFrameHeight);
    KNDrawAdvectColorBrush brush;
    brush.initialize(kFrameWidth, kFrameHeight, 0);
    AdvectFrame inputs(brush);
    brush.draw();
    const std::string path =
        qam::test::writeLayerFrame("KNDrawAdvectColorBrush", kFrameWidth, kFrameHeight);
    ASSERT_FALSE(path.empty());

    qam::Image image;
    ASSERT_TRUE(qam::readPng(path, image));
    EXPECT_EQ(image.width, kFrameWidth);
    EXPECT_EQ(image.height, kFrameHeight);
    // Top-down rows in the file: the file's last row is the framebuffer's first.
    for (int x : {0, 540, 1079}) {
        for (int y : {0, 960, 1919}) {
            const uint8_t* p =
                &image.rgba[(static_cast<size_t>(kFrameHeight - 1 - y) * kFrameWidth + x) * 4];
            const uint32_t fromFile =
                static_cast<uint32_t>(p[0]) << 24 | p[1] << 16 | p[2] << 8 | p[3];
            EXPECT_EQ(fromFile, pixel(x, y)) << x << ", " << y;
        }
    }
}

}  // namespace
