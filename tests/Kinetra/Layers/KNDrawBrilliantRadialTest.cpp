#include "Kinetra/Layers/KNDrawBrilliantRadial.h"

#include <initializer_list>
#include <utility>

#include "Kinetra/Core/KNMesh.h"
#include "tests/Kinetra/Layers/LayerTestSupport.h"

namespace {

using namespace qam::test;

using Kinetra::KNDrawBrilliantRadial;
using Kinetra::KNMesh;

// A 2 x 2 texture, image rows top first (row 0 is v = 0, which the screen coordinates put
// at the top of the surface).
std::vector<uint8_t> quadrants(Texel topLeft, Texel topRight, Texel bottomLeft, Texel bottomRight) {
    return texels(2, 2, [&](int x, int y) {
        return y == 0 ? (x == 0 ? topLeft : topRight) : (x == 0 ? bottomLeft : bottomRight);
    });
}

class KNDrawBrilliantRadialTest : public GLTest {
  protected:
    // An odd 63 x 63 surface so that pixel (31, 31) samples the quad's exact centre; the quad
    // covers it.
    static constexpr int kSide = 63;

    static void cover(KNDrawBrilliantRadial& layer) {
        glViewport(0, 0, kSide, kSide);
        layer.initialize(kSide, kSide);
        layer.setSize(kSide, kSide);
        layer.setPosition(31.5f, 31.5f, 0);
    }
    // Blue of the quadrant centres, top-left, top-right, bottom-left, bottom-right, within one
    // step of the 8-bit rounding.
    static void expectQuadrantBlues(int width, int height, std::initializer_list<int> expected) {
        const std::pair<int, int> centres[] = {{width / 4, 3 * height / 4},
                                               {3 * width / 4, 3 * height / 4},
                                               {width / 4, height / 4},
                                               {3 * width / 4, height / 4}};
        const int* blue = expected.begin();
        for (const auto& [x, y] : centres) {
            EXPECT_NEAR(channel(pixel(x, y), 8), *blue++, 1) << x << ", " << y;
        }
    }
};

TEST_F(KNDrawBrilliantRadialTest, CentresItsQuadOnThePositionWithScreenAndPatternCoordinates) {
    KNDrawBrilliantRadial layer;
    layer.initialize(720, 1280);
    const KNMesh& mesh = *layer.getMesh();
    // Centred on the default position (0, 0), coordinates upright, the screen's v from the top.
    expectPoints(mesh.vertex, {{-360, -640}, {360, -640}, {-360, 640}, {360, 640}});
    expectPoints(mesh.uv, {{0, 0}, {1, 0}, {0, 1}, {1, 1}});
    expectPoints(mesh.normal, {{-0.5f, 1.5f}, {0.5f, 1.5f}, {-0.5f, 0.5f}, {0.5f, 0.5f}});
    EXPECT_EQ(mesh.index, (std::vector<unsigned short>{0, 1, 2, 3}));
    // Portrait: the pattern follows the screen.
    expectPoints(layer.getPatternTextureUV(),
                 {{-0.5f, 1.5f}, {0.5f, 1.5f}, {-0.5f, 0.5f}, {0.5f, 0.5f}});

    // Rebuilt at the stored size, 720 x 1280 by default.
    layer.setPosition(360, 640, 0);
    expectPoints(mesh.vertex, {{0, 0}, {720, 0}, {0, 1280}, {720, 1280}});
    expectPoints(mesh.normal, {{0, 1}, {1, 1}, {0, 0}, {1, 0}});

    // setSize only stores the whole pixels; the next setPosition uses them.
    layer.setSize(300.7f, 200.2f);
    EXPECT_FLOAT_EQ(mesh.vertex[3].x, 720);
    layer.setPosition(150, 100, 0);
    expectPoints(mesh.vertex, {{0, 0}, {300, 0}, {0, 200}, {300, 200}});
    expectPoints(mesh.normal,
                 {{0, 1}, {300.0f / 720, 1}, {0, 1 - 200.0f / 1280}, {300.0f / 720, 0.84375f}});
    EXPECT_EQ(mesh.index.size(), 4u);

    // Flipped into the base coordinates and back; a rebuild also restores them.
    layer.flipTextureV();
    expectPoints(mesh.uv, {{0, 1}, {1, 1}, {0, 0}, {1, 0}});
    layer.flipTextureV();
    expectPoints(mesh.uv, {{0, 0}, {1, 0}, {0, 1}, {1, 1}});
    layer.flipTextureV();
    layer.setPosition(150, 100, 0);
    expectPoints(mesh.uv, {{0, 0}, {1, 0}, {0, 1}, {1, 1}});

    // A resize keeps the orientation chosen at initialisation.
    layer.resizeSurface(1280, 720);
    expectPoints(mesh.vertex, {{-490, -260}, {790, -260}, {-490, 460}, {790, 460}});
    expectPoints(layer.getPatternTextureUV(), {{-490.0f / 1280, 1 + 260.0f / 720},
                                               {790.0f / 1280, 1 + 260.0f / 720},
                                               {-490.0f / 1280, 1 - 460.0f / 720},
                                               {790.0f / 1280, 1 - 460.0f / 720}});

    // Landscape at initialisation: the pattern coordinates are the screen's, transposed.
    KNDrawBrilliantRadial landscape;
    landscape.initialize(1280, 720);
    landscape.setSize(1280, 720);
    landscape.setPosition(640, 360, 0);
    expectPoints(landscape.getMesh()->normal, {{0, 1}, {1, 1}, {0, 0}, {1, 0}});
    expectPoints(landscape.getPatternTextureUV(), {{1, 0}, {1, 1}, {0, 0}, {0, 1}});
}

TEST_F(KNDrawBrilliantRadialTest, DrawsTheInscribedDiscOfOutwardDirections) {
    LayerTexture alphaShape(Texel{255, 0, 0, 255});
    LayerTexture pattern(Texel{0, 0, 0, 255});
    KNDrawBrilliantRadial layer;
    cover(layer);
    layer.setAlphaShapeTextureID(alphaShape.id());
    layer.setPatternTextureID(pattern.id());
    glClearColor(1, 0, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    layer.draw();

    // Time step 1, alpha 1: blending passes the output through. The shaders are lowp, which
    // llvmpipe evaluates in single precision; the target is 8-bit.
    // Centre: N = (0, 0) gives (0.5, 0.5), alpha1 · alpha2 = 1 · 1, time step 1.
    EXPECT_PIXEL_NEAR(pixel(31, 31), rgba(128, 128, 255, 255), 1);
    // 25 pixels right: N = (50/63, 0), red (1 + 0.794) / 2 = 0.897.
    EXPECT_PIXEL_NEAR(pixel(56, 31), rgba(229, 128, 255, 255), kLayerTolerance);
    // 25 pixels left: red (1 - 0.794) / 2 = 0.103.
    EXPECT_PIXEL_NEAR(pixel(6, 31), rgba(26, 128, 255, 255), kLayerTolerance);
    // 25 pixels up (v grows upwards in the upright coordinates), y squeezed by 0.5625:
    // green (1 + 0.794 · 0.5625) / 2 = 0.723.
    EXPECT_PIXEL_NEAR(pixel(31, 56), rgba(128, 184, 255, 255), kLayerTolerance);
    EXPECT_PIXEL_NEAR(pixel(31, 6), rgba(128, 71, 255, 255), kLayerTolerance);
    // The diagonal: N = (44/63, 44/63), mag 0.976, still inside; one pixel on, mag 1.066,
    // discarded like the corner (mag 1.94).
    EXPECT_PIXEL_NEAR(pixel(53, 53), rgba(217, 178, 255, 255), kLayerTolerance);
    EXPECT_EQ(pixel(54, 54), rgba(255, 0, 255, 255));
    EXPECT_EQ(pixel(0, 0), rgba(255, 0, 255, 255));
    EXPECT_EQ(pixel(62, 62), rgba(255, 0, 255, 255));

    // Turned upside down: up is now negative green.
    layer.flipTextureV();
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(31, 56), rgba(128, 71, 255, 255), kLayerTolerance);
    EXPECT_PIXEL_NEAR(pixel(56, 31), rgba(229, 128, 255, 255), kLayerTolerance);
}

TEST_F(KNDrawBrilliantRadialTest, TheTimeStepScalesAndItsBlendOptionWaitsForTheNextDraw) {
    LayerTexture alphaShape(Texel{255, 0, 0, 255});
    LayerTexture pattern(Texel{0, 0, 0, 255});
    KNDrawBrilliantRadial layer;
    cover(layer);
    layer.setAlphaShapeTextureID(alphaShape.id());
    layer.setPatternTextureID(pattern.id());
    layer.setAlpha(0.5f);

    // 25 pixels right: red (0.794 · 0.5 + 1) / 2 = 0.698, green 0.5, blue 1, alpha 0.5.
    // First draw over transparent black: initialize's blend, source alpha for every channel:
    // rgb · 0.5 and alpha 0.5 · 0.5.
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(56, 31), rgba(89, 64, 128, 64), kLayerTolerance);
    // From the second draw on the layer's own option adds alpha with weight one.
    glClear(GL_COLOR_BUFFER_BIT);
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(56, 31), rgba(89, 64, 128, 128), kLayerTolerance);
}

TEST_F(KNDrawBrilliantRadialTest, MasksWithTheScreenAlphaShapeTimesThePattern) {
    KNDrawBrilliantRadial layer;
    cover(layer);

    // Alpha shape red per quadrant of the screen, pattern alpha 128 everywhere.
    LayerTexture shape(
        2, 2, quadrants({255, 0, 0, 255}, {128, 0, 0, 255}, {64, 0, 0, 255}, {0, 0, 0, 255}));
    LayerTexture halfPattern(Texel{0, 0, 0, 128});
    layer.setAlphaShapeTextureID(shape.id());
    layer.setPatternTextureID(halfPattern.id());
    layer.draw();
    // 1 · 0.502, 0.502 · 0.502, 0.251 · 0.502, 0.
    expectQuadrantBlues(kSide, kSide, {128, 64, 32, 0});

    // Square (portrait-like) surface: the pattern lies on the screen as it is.
    LayerTexture fullShape(Texel{255, 0, 0, 255});
    LayerTexture pattern(2, 2,
                         quadrants({0, 0, 0, 255}, {0, 0, 0, 51}, {0, 0, 0, 102}, {0, 0, 0, 204}));
    layer.setAlphaShapeTextureID(fullShape.id());
    layer.setPatternTextureID(pattern.id());
    layer.draw();
    expectQuadrantBlues(kSide, kSide, {255, 51, 102, 204});

    // Landscape: transposed, so top-right and bottom-left trade places.
    gl().resize(80, 48);
    glViewport(0, 0, 80, 48);
    KNDrawBrilliantRadial landscape;
    landscape.initialize(80, 48);
    landscape.setSize(80, 48);
    landscape.setPosition(40, 24, 0);
    landscape.setAlphaShapeTextureID(fullShape.id());
    landscape.setPatternTextureID(pattern.id());
    landscape.draw();
    expectQuadrantBlues(80, 48, {255, 102, 51, 204});
}

TEST_F(KNDrawBrilliantRadialTest, BindsAlphaShapeAndPatternToUnitsZeroAndOne) {
    KNDrawBrilliantRadial layer;
    cover(layer);
    layer.setAlphaShapeTextureID(21);
    layer.setPatternTextureID(22);
    layer.draw();
    expectSamplers(layer.getShaderManager()->getProgram(),
                   {{"uAlphaMap", 21}, {"uPatternMap", 22}});
    // Its draw turns depth testing off whatever the renderer's option.
    layer.setDepthTest(true);
    layer.draw();
    EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
}

TEST_F(KNDrawBrilliantRadialTest, BadInputIsLoggedAndDroppedUnsetTexturesAreBoundAsTheyAre) {
    KNDrawBrilliantRadial layer;
    expectOneLogLineEach({[&] { layer.flipTextureV(); }, [&] { layer.initialize(0, 64); }});
    EXPECT_TRUE(layer.getMesh()->vertex.empty());

    cover(layer);
    expectOneLogLineEach({[&] { layer.resizeSurface(64, 0); }, [&] { layer.setSize(-1, 10); }});
    layer.setPosition(31.5f, 31.5f, 0);
    EXPECT_FLOAT_EQ(layer.getMesh()->vertex[3].x, 63);
    EXPECT_FLOAT_EQ(layer.getMesh()->normal[3].x, 1);

    // Unset and zero textures are bound as they are: they read black with alpha 1.
    layer.setAlphaShapeTextureID(kUnset);
    layer.setPatternTextureID(0);
    layer.draw();
    EXPECT_PIXEL_NEAR(pixel(31, 31), rgba(128, 128, 0, 255), 1);
}

}  // namespace
