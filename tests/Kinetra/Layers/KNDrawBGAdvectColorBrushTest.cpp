#include "Kinetra/Layers/KNDrawBGAdvectColorBrush.h"

#include <GLES2/gl2.h>

#include <cstdint>
#include <string>
#include <vector>

#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNShaderManager.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "examples/common/Png.h"
#include "tests/Kinetra/Layers/LayerTestSupport.h"
#include "tests/support/GLCallCounter.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace {

using Kinetra::KNDrawBGAdvectColorBrush;
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

// Red ramp across the columns, 4 · x: linearly filtered at u it reads 256 u - 2.
std::vector<uint8_t> redRamp() {
    return texels(kSize, kSize, [](int x, int) {
        return Texel{static_cast<uint8_t>(4 * x), 0, 0, 255};
    });
}

// Green ramp up the rows, 4 · y, with nearest filtering: row y reads 4 · y exactly.
std::vector<uint8_t> greenRows() {
    return texels(kSize, kSize, [](int, int y) {
        return Texel{0, static_cast<uint8_t>(4 * y), 255, 255};
    });
}

GLuint boundTexture(GLenum unit) {
    glActiveTexture(GL_TEXTURE0 + unit);
    GLint name = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &name);
    return static_cast<GLuint>(name);
}

class KNDrawBGAdvectColorBrushTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        KNTextureManager::ReleaseInstance();
    }
    void TearDown() override { KNTextureManager::ReleaseInstance(); }
};

TEST_F(KNDrawBGAdvectColorBrushTest, DefaultsSettersSlotsAndUnits) {
    KNDrawBGAdvectColorBrush brush;
    EXPECT_EQ(brush.getFBOID(), kUnset);
    EXPECT_EQ(brush.getVelocityTextureID(), 0u);
    EXPECT_EQ(brush.getRadialTextureID(), 0u);
    EXPECT_EQ(brush.getBGTextureID(), kUnset);
    EXPECT_EQ(brush.getNoiseVectorScalar(), 0.0f);
    EXPECT_EQ(brush.getRadialVectorScalar(), 0.0f);
    brush.setTranslate(1, 2, 3);
    EXPECT_EQ(brush.getMVPManager(), nullptr);

    brush.initialize(kSize, kSize, 0);
    EXPECT_FLOAT_EQ(brush.getNoiseVectorScalar(), 15.625f);
    EXPECT_FLOAT_EQ(brush.getRadialVectorScalar(), 9.2625f);
    brush.setNoiseVectorScalar(2.0f);
    brush.setRadialVectorScalar(2.0f);
    EXPECT_FLOAT_EQ(brush.getNoiseVectorScalar(), 250.0f);
    EXPECT_FLOAT_EQ(brush.getRadialVectorScalar(), 37.05f);

    const unsigned char grey[4] = {128, 128, 128, 255};
    const unsigned int stone = KNTextureManager::getInstancePtr()->setTexture(
        "stone", const_cast<unsigned char*>(grey), 1, 1);
    brush.setBGTexture("stone", false);
    EXPECT_EQ(brush.getBGTextureID(), stone);
    brush.setFBOID(31);
    brush.setVelocityRadialTextureID(32, 33);

    Kinetra::KNShaderManager& shader = *brush.getShaderManager();
    const GLuint program = shader.getProgram();
    const char* slots[] = {
        "uMVPMatrix",         "uTexMap", "uVelocity", "uRadial", "uOriginal", "uNoiseVectorScalar",
        "uRadialVectorScalar"};
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(shader.getUniform(i), glGetUniformLocation(program, slots[i])) << slots[i];
        EXPECT_GE(shader.getUniform(i), 0) << slots[i];
    }

    qam::test::GLCallCounter calls;
    brush.draw();
    EXPECT_EQ(calls.count("glDrawElements"), 1);
    EXPECT_EQ(calls.count("glActiveTexture"), 4);
    const GLuint units[] = {31, 32, 33, stone};
    for (GLenum unit = 0; unit < 4; ++unit) {
        EXPECT_EQ(boundTexture(unit), units[unit]) << "unit " << unit;
        GLint sampler = -1;
        glGetUniformiv(program, shader.getUniform(static_cast<int>(unit) + 1), &sampler);
        EXPECT_EQ(sampler, static_cast<GLint>(unit));
    }
    float noise = 0;
    glGetUniformfv(program, shader.getUniform(5), &noise);
    EXPECT_FLOAT_EQ(noise, 250.0f);
    EXPECT_TRUE(glIsEnabled(GL_BLEND));

    // A new surface forgets the background only.
    brush.resizeSurface(32, 32);
    EXPECT_EQ(brush.getBGTextureID(), kUnset);
    EXPECT_EQ(brush.getFBOID(), 31u);
    EXPECT_EQ(brush.getRadialTextureID(), 33u);
    brush.draw();
    EXPECT_EQ(boundTexture(3), kUnset);
}

// Inside the field: the previous frame fetched upstream, nothing of the background mixed in.
// Outside: the background, which moves with the quad.
TEST_F(KNDrawBGAdvectColorBrushTest, AdvectsWithoutDriftAndShowsTheBackgroundElsewhere) {
    auto target = qam::test::boundTarget(kSize, kSize);
    LayerTexture previous(kSize, kSize, redRamp(), GL_LINEAR);
    LayerTexture background(kSize, kSize, greenRows());
    // Towards +u at full strength in the lower half, no field in the upper half.
    LayerTexture field(kSize, kSize, texels(kSize, kSize, [](int, int y) {
                           return Texel{255, 128, 255, static_cast<uint8_t>(y < 32 ? 255 : 0)};
                       }));
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
    target->clearFBOSurface();
    brush.draw();
    EXPECT_PIXEL_NEAR(pixel(20, 48), 0x00A0FFFFu, 1);
    EXPECT_EQ(pixel(20, 4), 0u);
}

std::vector<uint8_t> drawFrame(KNDrawBGAdvectColorBrush& brush, LayerTexture* inputs[3]) {
    brush.setFBOID(inputs[0]->id());
    brush.changeBGTextureID(inputs[1]->id());
    brush.setVelocityRadialTextureID(inputs[2]->id(), inputs[2]->id());
    brush.draw();
    return qam::readFramebuffer(kSize, kSize).rgba;
}

TEST_F(KNDrawBGAdvectColorBrushTest, DrawsTheSameFrameAfterALostContext) {
    const auto field = texels(kSize, kSize, [](int x, int y) {
        return Texel{static_cast<uint8_t>(4 * y), static_cast<uint8_t>(4 * x), 255,
                     static_cast<uint8_t>(x < 40 ? 255 : 0)};
    });
    KNDrawBGAdvectColorBrush brush;
    brush.initialize(kSize, kSize, 0);
    std::vector<uint8_t> before;
    {
        auto target = qam::test::boundTarget(kSize, kSize);
        LayerTexture previous(kSize, kSize, redRamp(), GL_LINEAR);
        LayerTexture background(kSize, kSize, greenRows());
        LayerTexture velocity(kSize, kSize, field, GL_LINEAR);
        LayerTexture* inputs[3] = {&previous, &background, &velocity};
        before = drawFrame(brush, inputs);
        loseContext();
        target->contextChanged();
        for (LayerTexture* t : inputs) {
            t->forget();
        }
    }
    brush.contextChanged();
    brush.initialize(kSize, kSize, 0);
    auto target = qam::test::boundTarget(kSize, kSize);
    LayerTexture previous(kSize, kSize, redRamp(), GL_LINEAR);
    LayerTexture background(kSize, kSize, greenRows());
    LayerTexture velocity(kSize, kSize, field, GL_LINEAR);
    LayerTexture* inputs[3] = {&previous, &background, &velocity};
    EXPECT_EQ(drawFrame(brush, inputs), before);
}

TEST_F(KNDrawBGAdvectColorBrushTest, BadInputIsLoggedAndDropped) {
    auto target = qam::test::boundTarget(kSize, kSize);
    qam::test::LogCapture log;
    KNDrawBGAdvectColorBrush brush;
    qam::test::GLCallCounter calls;
    brush.draw();
    brush.setSize(10, 10);  // builds a quad, but there is still nothing to draw it with
    brush.draw();
    EXPECT_EQ(calls.count("glDrawElements"), 0);
    EXPECT_EQ(log.messages().size(), 2u);

    brush.initialize(kSize, kSize, 0);
    brush.changeBGTextureID(9);
    brush.setBGTexture(nullptr, true);
    brush.resizeSurface(0.5f, 10);
    EXPECT_EQ(brush.getBGTextureID(), 9u);
    EXPECT_EQ(log.messages().size(), 4u);
    brush.draw();
    EXPECT_EQ(calls.count("glDrawElements"), 1);
    EXPECT_EQ(boundTexture(0), kUnset);  // no previous frame handed in yet
}

TEST_F(KNDrawBGAdvectColorBrushTest, LeavesAFullSizeFrameToLookAt) {
    constexpr int kWidthPx = 1080;
    constexpr int kHeightPx = 1920;
    auto target = qam::test::boundTarget(kWidthPx, kHeightPx);
    // A checked previous frame pulled along a swirl in the middle disc, over a gradient.
    LayerTexture previous(kSize, kSize, texels(kSize, kSize, [](int x, int y) {
                              const bool dark = ((x / 8) + (y / 8)) % 2 == 0;
                              return dark ? Texel{30, 30, 60, 255} : Texel{230, 200, 90, 255};
                          }));
    LayerTexture background(kSize, kSize,
                            texels(kSize, kSize,
                                   [](int x, int y) {
                                       return Texel{static_cast<uint8_t>(2 * y), 60,
                                                    static_cast<uint8_t>(255 - 3 * x), 255};
                                   }),
                            GL_LINEAR);
    LayerTexture swirl(kSize, kSize,
                       texels(kSize, kSize,
                              [](int x, int y) {
                                  const int dx = x - kSize / 2;
                                  const int dy = y - kSize / 2;
                                  const bool inside = dx * dx + dy * dy < 24 * 24;
                                  return Texel{static_cast<uint8_t>(128 - 4 * dy),
                                               static_cast<uint8_t>(128 + 4 * dx), 255,
                                               static_cast<uint8_t>(inside ? 255 : 0)};
                              }),
                       GL_LINEAR);
    KNDrawBGAdvectColorBrush brush;
    brush.initialize(kWidthPx, kHeightPx, 0);
    brush.setRadialVectorScalar(10);
    brush.setFBOID(previous.id());
    brush.changeBGTextureID(background.id());
    brush.setVelocityRadialTextureID(swirl.id(), swirl.id());
    brush.draw();
    const std::string path =
        qam::test::writeLayerFrame("KNDrawBGAdvectColorBrush", kWidthPx, kHeightPx);
    ASSERT_FALSE(path.empty());
    qam::Image image;
    ASSERT_TRUE(qam::readPng(path, image));
    EXPECT_EQ(image.width, kWidthPx);
    EXPECT_EQ(image.height, kHeightPx);
    EXPECT_EQ(image.rgba, qam::readFramebuffer(kWidthPx, kHeightPx).rgba);
}

}  // namespace
