#include "Kinetra/Core/KNDrawBackground.h"

#include <cmath>

#include "Kinetra/Core/KNDrawBGTilt.h"
#include "tests/Kinetra/Core/CoreTestSupport.h"

namespace {

using KNDrawBackgroundTest = CoreTest;
using KNDrawBGTiltTest = CoreTest;

// The u and v of `layer`'s texture coordinates after a draw, which hands its mesh to the base.
std::vector<float> uvOf(Kinetra::KNDrawBackground& layer) {
    layer.draw();
    return flatUV(layer.getMesh()->uv);
}

TEST_F(KNDrawBackgroundTest, CropsASquareBackgroundToThePortraitScreenAndTintsIt) {
    gl().resize(720, 1280);
    glViewport(0, 0, 720, 1280);
    // Red and green ramps, 255 (index + 0.5) / 1000 across columns and down rows: a linearly
    // filtered sample at (u, v) reads about 255 u and 255 v.
    std::vector<unsigned char> image(1000 * 1000 * 4, 255);
    for (size_t k = 0; k < 1000 * 1000; ++k) {
        image[4 * k] = static_cast<unsigned char>(std::lround(0.255 * (k % 1000 + 0.5)));
        image[4 * k + 1] = static_cast<unsigned char>(std::lround(0.255 * (k / 1000 + 0.5)));
    }
    Kinetra::KNDrawBackground layer;
    layer.initialize(720, 1280);
    layer.setTextureID(upload("bg", image, 1000, 1000));  // the crop follows a new texture
    layer.setColor(0.5f, 1, 1, 1);                        // the renderer colour tints the texels
    // sx = 0.72 < sy = 1.28: r = 0.5625, a margin of 0.21875 each side.
    expectFloats(uvOf(layer), {0.21875f, 1, 0.78125f, 1, 0.21875f, 0, 0.78125f, 0});
    // The left column shows the cropped middle, its red halved; image row 0 is at the top.
    using qam::test::channel;
    EXPECT_NEAR(channel(pixel(0, 640), 24), 0.5 * 0.21875 * 255, 2);
    EXPECT_NEAR(channel(pixel(360, 1279), 16), 0, 2);
    layer.resizeSurface(1280, 720);  // a landscape surface crops top and bottom instead
    expectFloats(uvOf(layer), {0, 0.78125f, 1, 0.78125f, 0, 0.21875f, 1, 0.21875f});
}

TEST_F(KNDrawBackgroundTest, WithoutABackgroundItDrawsItsTextureOverTheFullSquare) {
    upload("sky", rgba({kBlue}), 1, 1);
    Kinetra::KNDrawBackground layer;
    layer.initialize(kWidth, kHeight);
    layer.setTexture("sky");
    EXPECT_EQ(uvOf(layer), (std::vector<float>{0, 1, 1, 1, 0, 0, 1, 0}));
    layer.setFBOUV();  // flipped for a frame-buffer texture
    EXPECT_EQ(uvOf(layer), (std::vector<float>{0, 0, 1, 0, 0, 1, 1, 1}));
    LogCapture log;  // a null name is logged and the texture kept
    layer.setTexture(nullptr);
    EXPECT_EQ(log.messages().size(), 1u);
    layer.draw();
    EXPECT_EQ(std::pair(pixel(0, 0), pixel(63, 63)), std::pair(kBlue, kBlue));
}

TEST_F(KNDrawBGTiltTest, CrossFadesOpaquelyAndAlignmentAndSizeRebuildTheQuad) {
    // Transparent texels: the layer is opaque whatever it samples.
    const unsigned rear = upload("rear", rgba({0xFF000000u}), 1, 1),
                   front = upload("front", rgba({0x00FF0000u}), 1, 1);
    Kinetra::KNDrawBGTilt layer;
    layer.initialize(64, 64);
    layer.setRearTexture("rear");
    layer.setFrontTexture("front");
    layer.draw();  // alpha 1: the rear only
    EXPECT_PIXEL_NEAR(pixel(32, 32), kRed, 1);
    layer.setAlphaBlend(0.25f);  // a quarter rear, three quarters front
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0x40BF00FFu, 2);
    layer.setAlphaBlend(0);
    layer.setRearTextureID(front);  // by id as well: front and rear swapped
    layer.setFrontTextureID(rear);
    LogCapture log;  // null names are logged; the textures stay
    layer.setRearTexture(nullptr);
    layer.setFrontTexture(nullptr);
    EXPECT_EQ(log.messages().size(), 2u);
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(63, 0), kRed, 1);

    // Each step: the change, then a pixel showing the rear and one left black.
    const std::vector<std::pair<std::function<void()>, std::vector<int>>> steps = {
        {[&] { layer.setRectAlign(1); }, {10, 10, 40, 10}},  // centred on the origin
        {[&] { layer.setSize(32, 32); }, {10, 10, 20, 20}},  // still centred: 16 x 16
        {[&] { layer.setRectAlign(0); }, {20, 20, 40, 40}},  // at the corner, size kept
        {[&] { layer.resizeSurface(64, 64); }, {60, 60, 60, 60}}};
    for (const auto& [change, at] : steps) {
        glClear(GL_COLOR_BUFFER_BIT);
        change();
        layer.draw();
        EXPECT_PIXEL_NEAR(pixel(at[0], at[1]), kRed, 1) << at[0];
        EXPECT_EQ(pixel(at[2], at[3]) == kBlack, at[0] != 60) << at[0];
    }
    layer.setAlphaBlend(1);
    // Row 0 (the top of a picture) blue, row 1 red; a frame-buffer texture the other way up.
    layer.setRearTextureID(upload("rows", rgba({kBlue, kRed}), 1, 2));
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(32, 63), kBlue, 1);
    layer.setFBOUV();
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(32, 63), kRed, 1);
}

}  // namespace
