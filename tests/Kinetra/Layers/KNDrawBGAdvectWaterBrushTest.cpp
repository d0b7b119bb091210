#include "Kinetra/Layers/KNDrawBGAdvectWaterBrush.h"

#include <GLES2/gl2.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "Kinetra/Core/KNFBO.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "Kinetra/Layers/KNDrawRadialWaterBrush.h"
#include "examples/common/Png.h"
#include "tests/Kinetra/Layers/LayerTestSupport.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace {

using Kinetra::KNDrawBGAdvectWaterBrush;
using Kinetra::KNMesh;
using Kinetra::KNTextureManager;
using qam::test::byteOf;
using qam::test::channel;
using qam::test::GLTest;
using qam::test::kFrameHeight;
using qam::test::kFrameWidth;
using qam::test::kLayerTolerance;
using qam::test::LayerTexture;
using qam::test::LogCapture;
using qam::test::namedTexture;
using qam::test::Texel;
using qam::test::texels;

constexpr unsigned int kUnset = 0xFFFFFFFFu;
// The advection step: 0.0175 · 0.006.
constexpr double kStep = 0.000105;

// Red ramp across the 64 columns, 4 · x, linearly filtered: at u it reads 256 u - 2.
std::unique_ptr<LayerTexture> redRamp() {
    return std::make_unique<LayerTexture>(
        64, 64,
        texels(64, 64,
               [](int x, int) {
                   return Texel{static_cast<uint8_t>(4 * x), 0, 0, 255};
               }),
        GL_LINEAR);
}

double rampAt(double u) {
    return 256 * u - 2;
}

void expectUV(const KNMesh& mesh, const float (&expected)[4][2]) {
    ASSERT_EQ(mesh.uv.size(), 4u);
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_FLOAT_EQ(mesh.uv[i].x, expected[i][0]) << i;
        EXPECT_FLOAT_EQ(mesh.uv[i].y, expected[i][1]) << i;
    }
}

constexpr float kBase[4][2] = {{0, 1}, {1, 1}, {0, 0}, {1, 0}};

GLuint boundTexture(GLenum unit) {
    glActiveTexture(GL_TEXTURE0 + unit);
    GLint name = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &name);
    return static_cast<GLuint>(name);
}

float uniformValue(GLuint program, const char* name) {
    GLfloat value = 0;
    glGetUniformfv(program, glGetUniformLocation(program, name), &value);
    return value;
}

// A 96 x 64 background registered as "bg", linearly filtered: red 60, green up the rows
// (4 · row, read at v as 256 v - 2), blue 200.
void registerBackground() {
    std::vector<uint8_t> rows = texels(96, 64, [](int, int y) {
        return Texel{60, static_cast<uint8_t>(4 * y), 200, 255};
    });
    KNTextureManager::getInstancePtr()->setTextureMagFilterOption(GL_LINEAR);
    KNTextureManager::getInstancePtr()->setTexture("bg", rows.data(), 96, 64);
}

// A disc of coverage 1 within 0.4 of the texture's centre, fading to 0 at 0.47.
std::vector<uint8_t> disc() {
    return texels(128, 128, [](int x, int y) {
        const double r = std::hypot(x + 0.5 - 64, y + 0.5 - 64) / 128;
        const double a = std::clamp((0.47 - r) / 0.07, 0.0, 1.0);
        return Texel{255, 255, 255, static_cast<uint8_t>(std::lround(255 * a))};
    });
}

class KNDrawBGAdvectWaterBrushTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        KNTextureManager::ReleaseInstance();
    }
    void TearDown() override { KNTextureManager::ReleaseInstance(); }
};

TEST_F(KNDrawBGAdvectWaterBrushTest, DefaultsQuadAndCoordinates) {
    KNDrawBGAdvectWaterBrush brush;
    EXPECT_EQ(brush.getFBOID(), kUnset);
    EXPECT_EQ(brush.getVelocityTextureID(), 0u);
    EXPECT_EQ(brush.getRadialTextureID(), 0u);
    EXPECT_EQ(brush.getBGTextureID(), kUnset);
    EXPECT_EQ(brush.getNoiseVectorScalar(), 0.0f);
    EXPECT_EQ(brush.getRadialVectorScalar(), 0.0f);
    EXPECT_EQ(brush.getSurfaceWidth(), 0);
    EXPECT_EQ(brush.getColor()[3], 1.0f);

    // The raw factor 1, not 125 and 18.525 times anything.
    brush.initialize(300, 200, 0);
    EXPECT_EQ(brush.getNoiseVectorScalar(), 1.0f);
    EXPECT_EQ(brush.getRadialVectorScalar(), 1.0f);
    brush.setNoiseVectorScalar(1);
    brush.setRadialVectorScalar(1);
    EXPECT_FLOAT_EQ(brush.getNoiseVectorScalar(), 125.0f);
    EXPECT_FLOAT_EQ(brush.getRadialVectorScalar(), 18.525f);

    KNMesh& mesh = brush.getMesh();
    ASSERT_EQ(mesh.vertex.size(), 4u);
    EXPECT_EQ(mesh.vertex[3].x, 300.0f);
    EXPECT_EQ(mesh.vertex[3].y, 200.0f);
    expectUV(mesh, kBase);
    expectUV(brush.getBGMesh(), kBase);
    EXPECT_TRUE(brush.getBGMesh().vertex.empty());

    // Centred, the fourth corner's y comes from x0; indices grow by four a rebuild.
    brush.setRectAlign(1);
    brush.setSize(300, 200);
    EXPECT_EQ(mesh.vertex[0].x, -150.0f);
    EXPECT_EQ(mesh.vertex[0].y, -100.0f);
    EXPECT_EQ(mesh.vertex[2].y, 100.0f);
    EXPECT_EQ(mesh.vertex[3].x, 150.0f);
    EXPECT_EQ(mesh.vertex[3].y, 50.0f);
    brush.setSize(300, 200);
    brush.setSize(300, 200);
    EXPECT_EQ(mesh.index.size(), 16u);
    brush.setSize(300.7f, 200.2f);
    brush.setPosition(0, 0, 0);
    EXPECT_EQ(mesh.vertex[1].x, 150.0f);
    EXPECT_EQ(mesh.vertex[2].y, 100.0f);
    // initialize starts both meshes afresh.
    brush.initialize(300, 200, 0);
    EXPECT_EQ(mesh.index.size(), 4u);
    EXPECT_EQ(mesh.uv.size(), 4u);
    EXPECT_EQ(brush.getBGMesh().uv.size(), 4u);

    // A 2:1 background on a square surface: only the background coordinates are cropped.
    brush.initialize(64, 64, 0);
    const unsigned int bg = namedTexture("bg", 128, 64, std::vector<uint8_t>(128 * 64 * 4, 0));
    brush.setBGTexture("bg", false);
    EXPECT_EQ(brush.getBGTextureID(), bg);
    expectUV(brush.getBGMesh(), {{0.25f, 1}, {0.75f, 1}, {0.25f, 0}, {0.75f, 0}});
    expectUV(mesh, kBase);
    // A new surface is fitted again, and the background must be handed in again.
    brush.resizeSurface(128, 64);
    EXPECT_EQ(brush.getBGTextureID(), kUnset);
    expectUV(brush.getBGMesh(), kBase);
    expectUV(mesh, kBase);
    brush.changeBGTextureID(bg);
    EXPECT_EQ(brush.getBGTextureID(), bg);
}

TEST_F(KNDrawBGAdvectWaterBrushTest, SlotsUnitsValuesAndBlending) {
    KNDrawBGAdvectWaterBrush brush;
    brush.initialize(kWidth, kHeight, 0);
    Kinetra::KNShaderManager& shader = brush.getShaderManager();
    const GLuint program = shader.getProgram();
    const char* uniforms[] = {
        "uMVPMatrix",         "uTexMap", "uVelocity", "uRadial", "uOriginal", "uNoiseVectorScalar",
        "uRadialVectorScalar"};
    for (int slot = 0; slot < 7; ++slot) {
        EXPECT_EQ(shader.getUniform(slot), glGetUniformLocation(program, uniforms[slot]))
            << uniforms[slot];
    }
    const char* attributes[] = {"aPosition", "aTexUV", "aTexUVBG"};
    for (int id = 0; id < 3; ++id) {
        EXPECT_EQ(shader.getAttribute(id), glGetAttribLocation(program, attributes[id]));
    }

    brush.setFBOID(11);
    brush.setVelocityRadialTextureID(12, 13);
    glEnable(GL_BLEND);
    brush.draw();
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_EQ(boundTexture(0), 11u);
    EXPECT_EQ(boundTexture(1), 12u);
    EXPECT_EQ(boundTexture(2), 13u);
    EXPECT_EQ(boundTexture(3), kUnset);  // the unset background, bound as it is
    const char* samplers[] = {"uTexMap", "uVelocity", "uRadial", "uOriginal"};
    for (GLint unit = 0; unit < 4; ++unit) {
        GLint value = -1;
        glGetUniformiv(program, glGetUniformLocation(program, samplers[unit]), &value);
        EXPECT_EQ(value, unit) << samplers[unit];
    }
    EXPECT_EQ(uniformValue(program, "uNoiseVectorScalar"), 1.0f);
    EXPECT_EQ(uniformValue(program, "uRadialVectorScalar"), 1.0f);
    brush.setNoiseVectorScalar(1);
    brush.draw();
    EXPECT_EQ(uniformValue(program, "uNoiseVectorScalar"), 125.0f);
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

    // Two targets in turn, each frame reading the one before.
    auto a = qam::test::boundTarget(kWidth, kHeight);
    brush.setFBOID(red.id());
    brush.draw();
    const uint32_t first = pixel(30, 30);
    EXPECT_NEAR(channel(first, 24), 0.97 * 255, kLayerTolerance);
    EXPECT_NEAR(channel(first, 8), 0.03 * 255, kLayerTolerance);
    EXPECT_EQ(channel(first, 0), 255);
    auto b = qam::test::boundTarget(kWidth, kHeight);
    brush.setFBOID(a->getFBOTexture());
    brush.draw();
    const uint32_t second = pixel(30, 30);
    EXPECT_NEAR(channel(second, 24), 0.97 * channel(first, 24), kLayerTolerance);
    EXPECT_NEAR(channel(second, 8), 0.97 * channel(first, 8) + 0.03 * 255, kLayerTolerance);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

TEST_F(KNDrawBGAdvectWaterBrushTest, AdvectsAlongTheFieldAndTheNoise) {
    auto ramp = redRamp();
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
    auto ramp = redRamp();
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

TEST_F(KNDrawBGAdvectWaterBrushTest, DrawsTheSameAfterALostContext) {
    const auto field = texels(64, 64, [](int x, int y) {
        return Texel{static_cast<uint8_t>(4 * y), static_cast<uint8_t>(255 - 4 * x), 255,
                     static_cast<uint8_t>(x < 40 ? 255 : 0)};
    });
    const auto picture = texels(64, 64, [](int x, int y) {
        return Texel{static_cast<uint8_t>(4 * x), static_cast<uint8_t>(4 * y), 90, 255};
    });
    KNDrawBGAdvectWaterBrush brush;
    std::vector<uint8_t> before;
    auto drawWith = [&] {
        LayerTexture previous(64, 64, picture, GL_LINEAR);
        LayerTexture flow(64, 64, field, GL_LINEAR);
        LayerTexture background(Texel{10, 200, 30, 255});
        brush.initialize(kWidth, kHeight, 0);
        brush.setRadialVectorScalar(20);
        brush.setNoiseVectorScalar(2);
        brush.setFBOID(previous.id());
        brush.setVelocityRadialTextureID(flow.id(), flow.id());
        brush.changeBGTextureID(background.id());
        glClear(GL_COLOR_BUFFER_BIT);
        brush.draw();
        return gl().readPixels(0, 0, kWidth, kHeight);
    };
    before = drawWith();

    loseContext();
    glViewport(0, 0, kWidth, kHeight);
    brush.contextChanged();
    {
        LogCapture log;
        brush.draw();
        EXPECT_EQ(log.messages().size(), 1u);
    }
    EXPECT_EQ(drawWith(), before);
}

TEST_F(KNDrawBGAdvectWaterBrushTest, BadInputIsLoggedAndDropped) {
    KNDrawBGAdvectWaterBrush brush;
    LogCapture log;
    brush.draw();
    brush.setBGTexture(nullptr, true);
    brush.initialize(std::numeric_limits<float>::infinity(), 64, 0);
    brush.resizeSurface(64, -1);
    brush.setSize(0, 0);
    EXPECT_EQ(log.messages().size(), 5u);
    EXPECT_EQ(brush.getBGTextureID(), kUnset);
    EXPECT_EQ(brush.getSurfaceWidth(), 0);
    EXPECT_TRUE(brush.getMesh().vertex.empty());
    EXPECT_EQ(pixel(10, 10), 0u);
    // The transform setters always reach the matrices.
    brush.setTranslate(5, 6, 0);
    EXPECT_EQ(brush.getMVPManager().getModelMatrix()[3][0], 5.0f);
}

TEST_F(KNDrawBGAdvectWaterBrushTest, LeavesAFullSizeFrameToLookAt) {
    // The field: a radial water brush painted into its own target, strongest on a ring.
    registerBackground();
    namedTexture("disc", 128, 128, disc());
    namedTexture("ring", 128, 128, texels(128, 128, [](int x, int y) {
                     const double r = std::hypot(x + 0.5 - 64, y + 0.5 - 64) / 128;
                     const double p = std::clamp(1 - std::abs(r - 0.15) * 5, 0.0, 1.0);
                     return Texel{static_cast<uint8_t>(std::lround(255 * p)), 0, 0, 255};
                 }));
    auto field = qam::test::boundTarget(kFrameWidth, kFrameHeight);
    Kinetra::KNDrawRadialWaterBrush radial;
    radial.initialize(kFrameWidth, kFrameHeight);
    radial.setRectAlign(1);
    radial.setSize(kFrameWidth, kFrameWidth);
    radial.setPosition(540, 960, 0);
    radial.setMaskTexture("disc");
    radial.setGraphTexture("ring");
    radial.setTimeStep(1);
    radial.draw();

    // A checked picture pulled towards the centre for twelve frames over the background.
    LayerTexture checks(
        16, 16, texels(16, 16, [](int x, int y) {
            return (x + y) % 2 == 0 ? Texel{250, 240, 220, 255} : Texel{30, 40, 90, 255};
        }));
    LayerTexture noise(64, 64,
                       texels(64, 64,
                              [](int x, int y) {
                                  return Texel{static_cast<uint8_t>(128 + 100 * std::sin(x * 0.4)),
                                               static_cast<uint8_t>(128 + 100 * std::cos(y * 0.3)),
                                               0, 255};
                              }),
                       GL_LINEAR);
    KNDrawBGAdvectWaterBrush brush;
    brush.initialize(kFrameWidth, kFrameHeight, 0);
    brush.setBGTexture("bg", false);
    brush.setRadialVectorScalar(10);
    brush.setVelocityRadialTextureID(noise.id(), field->getFBOTexture());
    std::unique_ptr<Kinetra::KNFBO> frames[2];
    unsigned int previous = checks.id();
    for (int frame = 0; frame < 12; ++frame) {
        frames[frame % 2] = qam::test::boundTarget(kFrameWidth, kFrameHeight);
        brush.setFBOID(previous);
        brush.draw();
        previous = frames[frame % 2]->getFBOTexture();
    }
    // Outside the field, the fitted background: green 256 v - 2 halfway up.
    const uint32_t outside = pixel(5, 960);
    EXPECT_NEAR(channel(outside, 24), 60, kLayerTolerance);
    EXPECT_NEAR(channel(outside, 16), 256 * 960.5 / 1920 - 2, kLayerTolerance);
    EXPECT_NEAR(channel(outside, 8), 200, kLayerTolerance);
    EXPECT_TRUE(qam::test::leaveLayerFrame("KNDrawBGAdvectWaterBrush", kFrameWidth, kFrameHeight));
}

}  // namespace
