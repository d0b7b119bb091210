#include "Kinetra/Core/KNDrawBackground.h"

#include <GLES2/gl2.h>

#include <cmath>
#include <vector>

#include "Kinetra/Core/KNShaderManager.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace {

using Kinetra::KNDrawBackground;
using Kinetra::KNTextureManager;
using Kinetra::KNVector3D;
using qam::test::channel;
using qam::test::GLTest;

// Red and green ramps, 255 · (index + 0.5) / size across columns and down rows, so that a
// linearly filtered sample at (u, v) reads about 255 u and 255 v.
std::vector<unsigned char> ramps(int width, int height) {
    std::vector<unsigned char> pixels(static_cast<size_t>(width) * height * 4);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            unsigned char* p = &pixels[(static_cast<size_t>(y) * width + x) * 4];
            p[0] = static_cast<unsigned char>(std::lround(255.0 * (x + 0.5) / width));
            p[1] = static_cast<unsigned char>(std::lround(255.0 * (y + 0.5) / height));
            p[2] = 0;
            p[3] = 255;
        }
    }
    return pixels;
}

void expectUV(const KNVector3D<float>& uv, float u, float v) {
    EXPECT_FLOAT_EQ(uv.x, u);
    EXPECT_FLOAT_EQ(uv.y, v);
    EXPECT_EQ(uv.z, 0.0f);
}

class KNDrawBackgroundTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        KNTextureManager::ReleaseInstance();  // no "bg" left by another test
    }
    void TearDown() override { KNTextureManager::ReleaseInstance(); }

    // Draws once so that the layer hands its mesh to the base, and returns the coordinates.
    const std::vector<KNVector3D<float>>& uvOf(KNDrawBackground& layer) {
        layer.draw();
        return layer.getMesh()->uv;
    }
};

TEST_F(KNDrawBackgroundTest, CropsASquareBackgroundToAPortraitScreen) {
    gl().resize(720, 1280);
    glViewport(0, 0, 720, 1280);
    glClear(GL_COLOR_BUFFER_BIT);
    std::vector<unsigned char> image = ramps(1000, 1000);
    KNTextureManager* textures = KNTextureManager::getInstancePtr();
    const unsigned int bg = textures->setTexture("bg", image.data(), 1000, 1000);

    KNDrawBackground layer;
    layer.initialize(720, 1280);
    layer.setTexture("bg");
    EXPECT_EQ(layer.getTextureID(), bg);
    const auto& uv = uvOf(layer);
    ASSERT_EQ(uv.size(), 4u);
    // sx = 0.72 < sy = 1.28: r = 0.5625, a margin of 0.21875 each side.
    expectUV(uv[0], 0.21875f, 1);
    expectUV(uv[1], 0.78125f, 1);
    expectUV(uv[2], 0.21875f, 0);
    expectUV(uv[3], 0.78125f, 0);

    // Left and right screen columns show the cropped middle of the image; image row 0 is at
    // the top of the screen. One step of tolerance for the filtering, two for mediump.
    EXPECT_NEAR(channel(pixel(0, 640), 24), 0.21875 * 255, 2);
    EXPECT_NEAR(channel(pixel(719, 640), 24), 0.78125 * 255, 2);
    EXPECT_NEAR(channel(pixel(360, 640), 24), 0.5 * 255, 2);
    EXPECT_NEAR(channel(pixel(360, 1279), 16), 0, 2);
    EXPECT_NEAR(channel(pixel(360, 0), 16), 255, 2);
    EXPECT_EQ(channel(pixel(360, 640), 0), 255);

    // The renderer colour tints the texels.
    layer.setColor(0.5f, 1, 1, 1);
    layer.draw();
    EXPECT_NEAR(channel(pixel(360, 640), 24), 0.5 * 0.5 * 255, 2);

    // A landscape surface crops top and bottom instead.
    layer.resizeSurface(1280, 720);
    const auto& landscape = uvOf(layer);
    expectUV(landscape[0], 0, 0.78125f);
    expectUV(landscape[3], 1, 0.21875f);
}

TEST_F(KNDrawBackgroundTest, WithoutABackgroundTheCoordinatesStayTheFullSquare) {
    KNDrawBackground layer;
    layer.initialize(64, 64);
    const auto& uv = uvOf(layer);
    expectUV(uv[0], 0, 1);
    expectUV(uv[1], 1, 1);
    expectUV(uv[2], 0, 0);
    expectUV(uv[3], 1, 0);
    EXPECT_EQ(layer.getMesh()->vertex[3].x, 64.0f);
    EXPECT_EQ(layer.getMesh()->index.size(), 4u);

    // Flipped for a frame-buffer texture, and back.
    layer.setFBOUV();
    EXPECT_TRUE(layer.getFBOUV());
    expectUV(uvOf(layer)[0], 0, 0);
    expectUV(uvOf(layer)[3], 1, 1);
    layer.setFBOUV();
    expectUV(uvOf(layer)[0], 0, 1);
    expectUV(uvOf(layer)[3], 1, 0);
}

TEST_F(KNDrawBackgroundTest, DrawsItsTextureOverTheSurface) {
    const unsigned char blue[4] = {0, 0, 255, 255};
    KNTextureManager* textures = KNTextureManager::getInstancePtr();
    const unsigned int id = textures->setTexture("sky", const_cast<unsigned char*>(blue), 1, 1);
    KNDrawBackground layer;
    layer.initialize(kWidth, kHeight);
    layer.setTextureID(id);
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(0, 0), 0x0000FFFFu, 1);
    EXPECT_PIXEL_NEAR(pixel(63, 63), 0x0000FFFFu, 1);

    // A null name is logged and the texture kept.
    qam::test::LogCapture log;
    layer.setTexture(nullptr);
    EXPECT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(layer.getTextureID(), id);

    // The program outlives a lost context in this layer: it does not forget its name.
    const unsigned int program = layer.getShaderManager()->getProgram();
    layer.contextChanged();
    EXPECT_EQ(layer.getShaderManager()->getProgram(), program);
}

}  // namespace
