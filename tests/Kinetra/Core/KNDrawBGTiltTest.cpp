#include "Kinetra/Core/KNDrawBGTilt.h"

#include <GLES2/gl2.h>

#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace {

using Kinetra::KNDrawBGTilt;
using Kinetra::KNTextureManager;
using qam::test::GLTest;

constexpr uint32_t kBlack = 0x00000000u;

class KNDrawBGTiltTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        KNTextureManager* textures = KNTextureManager::getInstancePtr();
        // Transparent texels: the layer is opaque whatever it samples.
        const unsigned char red[4] = {255, 0, 0, 0};
        const unsigned char green[4] = {0, 255, 0, 0};
        rear = textures->setTexture("rear", const_cast<unsigned char*>(red), 1, 1);
        front = textures->setTexture("front", const_cast<unsigned char*>(green), 1, 1);
        layer.initialize(kWidth, kHeight);
        layer.setRearTexture("rear");
        layer.setFrontTexture("front");
    }
    void TearDown() override { KNTextureManager::ReleaseInstance(); }

    unsigned int rear = 0;
    unsigned int front = 0;
    KNDrawBGTilt layer;
};

TEST_F(KNDrawBGTiltTest, CrossFadesRearAndFrontOpaquely) {
    layer.draw();  // alpha 1: the rear only
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0xFF0000FFu, 1);

    layer.setAlphaBlend(0.25f);  // a quarter rear, three quarters front
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0x40BF00FFu, 2);

    layer.setAlphaBlend(0);
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(0, 63), 0x00FF00FFu, 1);

    // By id as well: front and rear swapped.
    layer.setRearTextureID(front);
    layer.setFrontTextureID(rear);
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(63, 0), 0xFF0000FFu, 1);

    // Null names are logged; the textures stay.
    qam::test::LogCapture log;
    layer.setRearTexture(nullptr);
    layer.setFrontTexture(nullptr);
    EXPECT_EQ(log.messages().size(), 2u);
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(63, 0), 0xFF0000FFu, 1);
}

TEST_F(KNDrawBGTiltTest, AlignmentAndSizeRebuildTheQuad) {
    layer.setRectAlign(1);  // centred on the origin: only the lower-left quarter shows
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(10, 10), 0xFF0000FFu, 1);
    EXPECT_EQ(pixel(50, 50), kBlack);

    glClear(GL_COLOR_BUFFER_BIT);
    layer.setSize(32, 32);  // still centred: 16 x 16 pixels show
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(10, 10), 0xFF0000FFu, 1);
    EXPECT_EQ(pixel(20, 20), kBlack);

    glClear(GL_COLOR_BUFFER_BIT);
    layer.setRectAlign(0);  // back at the corner, with the size kept
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(20, 20), 0xFF0000FFu, 1);
    EXPECT_EQ(pixel(40, 40), kBlack);

    glClear(GL_COLOR_BUFFER_BIT);
    layer.resizeSurface(kWidth, kHeight);
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(60, 60), 0xFF0000FFu, 1);
}

TEST_F(KNDrawBGTiltTest, FrameBufferCoordinatesAreFlipped) {
    // Row 0 (the top of a picture) blue, row 1 red.
    const unsigned char rows[8] = {0, 0, 255, 255, 255, 0, 0, 255};
    KNTextureManager* textures = KNTextureManager::getInstancePtr();
    layer.setRearTextureID(textures->setTexture("rows", const_cast<unsigned char*>(rows), 1, 2));
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(32, 63), 0x0000FFFFu, 1);
    EXPECT_PIXEL_NEAR(pixel(32, 0), 0xFF0000FFu, 1);

    layer.setFBOUV();
    EXPECT_TRUE(layer.getFBOUV());
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(32, 63), 0xFF0000FFu, 1);
    EXPECT_PIXEL_NEAR(pixel(32, 0), 0x0000FFFFu, 1);
}

}  // namespace
