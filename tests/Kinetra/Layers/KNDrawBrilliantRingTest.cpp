#include "Kinetra/Layers/KNDrawBrilliantRing.h"

#include <cmath>
#include <initializer_list>
#include <utility>

#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "tests/Kinetra/Layers/LayerTestSupport.h"
#include "tests/support/LogCapture.h"

namespace {

using namespace qam::test;

using Kinetra::KNDrawBrilliantRing;
using Kinetra::KNTextureManager;

// The five images of one ring draw.
struct RingImages {
    std::unique_ptr<LayerTexture> background, shine, diamond, alpha, blur;

    void bind(KNDrawBrilliantRing& ring) const {
        ring.setBackgroundTextureID(background->id());
        ring.setShineTextureID(shine->id());
        ring.setDiamondTextureID(diamond->id());
        ring.setAlphaTextureID(alpha->id());
        ring.setBlurTextureID(blur->id());
    }
};

std::unique_ptr<LayerTexture> uniform(Texel colour) {
    return std::make_unique<LayerTexture>(colour);
}

// Four columns of test colours, sampled nearest: grey, a mild green, a saturated dark red and
// full red.
std::unique_ptr<LayerTexture> colourColumns() {
    const Texel columns[4] = {
        {128, 128, 128, 255}, {51, 153, 102, 255}, {153, 0, 0, 255}, {255, 0, 0, 255}};
    return std::make_unique<LayerTexture>(4, 1, [&](int x, int) { return columns[x]; });
}

// Images that light every pixel a little (shine 1/255) under a full alpha map: the output is
// the hue-shifted zoomed background plus 1/255.
RingImages faintlyLit(std::unique_ptr<LayerTexture> background) {
    RingImages images;
    images.background = std::move(background);
    images.shine = uniform({1, 0, 0, 255});
    images.diamond = uniform({0, 0, 0, 255});
    images.alpha = uniform({255, 0, 0, 255});
    images.blur = uniform({0, 0, 0, 255});
    return images;
}

class KNDrawBrilliantRingTest : public LayerTest {
  protected:
    // A ring over the 64 x 64 surface writing its output unblended.
    static void cover(KNDrawBrilliantRing& ring) {
        ring.initialize(kWidth, kHeight);
        ring.setBlendOption(GL_ONE, GL_ZERO);
    }
    // The centres of the four colour columns; the zoomed coordinates of each stay in it.
    static std::vector<uint32_t> columnPixels() {
        return {pixel(8, 32), pixel(24, 32), pixel(40, 32), pixel(56, 32)};
    }
};

TEST_F(KNDrawBrilliantRingTest, BuildsItsQuadAndThreeCoordinateSets) {
    KNDrawBrilliantRing ring;
    ring.initialize(300, 200);
    const auto& mesh = *ring.getMesh();
    expectPoints(mesh.vertex, {{0, 0}, {300, 0}, {0, 200}, {300, 200}});
    expectPoints(mesh.uv, {{0, 1}, {1, 1}, {0, 0}, {1, 0}});
    EXPECT_EQ(mesh.index, (std::vector<unsigned short>{0, 1, 2, 3}));
    // No "bg" image: the background coordinates are the base ones. Zoomed by 1 / 0.95.
    expectPoints(ring.getBackgroundTextureUV(), {{0, 1}, {1, 1}, {0, 0}, {1, 0}});
    expectPoints(ring.getTabScaledTextureUV(),
                 {{0.05f, 0.95f}, {0.95f, 0.95f}, {0.05f, 0.05f}, {0.95f, 0.05f}});

    ring.createTabScaledTextureUV(0.75f, {0, 0});
    expectPoints(ring.getTabScaledTextureUV(),
                 {{0.25f, 0.75f}, {0.75f, 0.75f}, {0.25f, 0.25f}, {0.75f, 0.25f}});
    ring.createTabScaledTextureUV(1.0f, {0.1f, -0.2f});
    expectPoints(ring.getTabScaledTextureUV(),
                 {{0.1f, 0.8f}, {1.1f, 0.8f}, {0.1f, -0.2f}, {1.1f, -0.2f}});
    ring.createTabScaledTextureUV(1.25f, {0, 0});
    expectPoints(ring.getTabScaledTextureUV(),
                 {{-0.25f, 1.25f}, {1.25f, 1.25f}, {-0.25f, -0.25f}, {1.25f, -0.25f}});

    // setSize rebuilds at the size as given and leaves the zoom alone; setPosition rebuilds
    // at the whole pixels and ignores the position.
    ring.setSize(300.7f, 200.2f);
    expectPoints(mesh.vertex, {{0, 0}, {300.7f, 0}, {0, 200.2f}, {300.7f, 200.2f}});
    EXPECT_FLOAT_EQ(ring.getTabScaledTextureUV()[0].x, -0.25f);
    ring.setPosition(50, 60, 0);
    expectPoints(mesh.vertex, {{0, 0}, {300, 0}, {0, 200}, {300, 200}});
    // A resize brings the zoom back to 0.95.
    ring.resizeSurface(400, 100);
    expectPoints(mesh.vertex, {{0, 0}, {400, 0}, {0, 100}, {400, 100}});
    EXPECT_FLOAT_EQ(ring.getTabScaledTextureUV()[0].x, 0.05f);

    // Before any setSize the stored size is 0 x 0: setPosition collapses the quad, and the
    // texture manager logs that it has no screen to crop the background to.
    KNDrawBrilliantRing unsized;
    unsized.initialize(300, 200);
    LogCapture log;
    unsized.setPosition(10, 10, 0);
    EXPECT_EQ(log.messages().size(), 1u);
    expectPoints(unsized.getMesh()->vertex, {{0, 0}, {0, 0}, {0, 0}, {0, 0}});
}

TEST_F(KNDrawBrilliantRingTest, CropsTheBackgroundCoordinatesToTheBgImage) {
    // A square "bg" on a 300 x 200 surface: r = 0.2 / 0.3, a margin of 1/6 top and bottom.
    KNTextureManager::getInstancePtr()->setTextureId("bg", 77, 1000, 1000);
    KNDrawBrilliantRing ring;
    ring.initialize(300, 200);
    expectPoints(ring.getBackgroundTextureUV(),
                 {{0, 5.0f / 6}, {1, 5.0f / 6}, {0, 1.0f / 6}, {1, 1.0f / 6}});
    // The base coordinates themselves stay whole.
    expectPoints(ring.getMesh()->uv, {{0, 1}, {1, 1}, {0, 0}, {1, 0}});
    // The crop uses the whole pixels: 300.9 x 200.9 crops like 300 x 200.
    ring.setSize(300.9f, 200.9f);
    EXPECT_FLOAT_EQ(ring.getBackgroundTextureUV()[0].y, 5.0f / 6);
    ring.resizeSurface(200, 300);
    expectPoints(ring.getBackgroundTextureUV(),
                 {{1.0f / 6, 1}, {5.0f / 6, 1}, {1.0f / 6, 0}, {5.0f / 6, 0}});
}

TEST_F(KNDrawBrilliantRingTest, ShiftsTheHueAndPushesSaturatedDarkColours) {
    KNDrawBrilliantRing ring;
    cover(ring);
    RingImages images = faintlyLit(colourColumns());
    images.bind(ring);
    ring.draw();
    // RGB -> HSV -> RGB with the hue 0.027 lower, plus the shine's 1/255:
    // grey 0.502 has no hue and comes back as it was: 0.502 + 0.004;
    // (0.2, 0.6, 0.4): h 0.4167 -> 0.3897, s 0.667, v 0.6 -> (0.2, 0.6, 0.335);
    // (0.6, 0, 0): s 1 > 0.85, v 0.6 < 0.7 -> h -0.027, s 1.4, v 0.78 -> (0.78, -0.312, -0.135);
    // (1, 0, 0): v 1, hue only -> (1, 0, 0.162).
    const std::vector<uint32_t> shifted = columnPixels();
    EXPECT_PIXEL_NEAR(shifted[0], rgba(129, 129, 129, 255), kLayerTolerance);
    EXPECT_PIXEL_NEAR(shifted[1], rgba(52, 154, 86, 255), kLayerTolerance);
    EXPECT_PIXEL_NEAR(shifted[2], rgba(200, 0, 0, 255), kLayerTolerance);
    EXPECT_PIXEL_NEAR(shifted[3], rgba(255, 1, 42, 255), kLayerTolerance);

    // A blur of 0.502 lifts what the saturation of 1.4 pushed below zero.
    images.blur = uniform({128, 0, 0, 255});
    images.bind(ring);
    ring.draw();
    const std::vector<uint32_t> blurred = columnPixels();
    EXPECT_PIXEL_NEAR(blurred[1], rgba(180, 255, 214, 255), kLayerTolerance);
    EXPECT_PIXEL_NEAR(blurred[2], rgba(255, 49, 95, 255), kLayerTolerance);
    EXPECT_PIXEL_NEAR(blurred[3], rgba(255, 129, 170, 255), kLayerTolerance);

    // An alpha map of 0.502 mixes the background half back in: green column
    // (0.2, 0.6, 0.4 + 0.335) / 2 + 0.004.
    images.blur = uniform({0, 0, 0, 255});
    images.alpha = uniform({128, 0, 0, 255});
    images.bind(ring);
    ring.draw();
    EXPECT_PIXEL_NEAR(columnPixels()[1], rgba(52, 154, 95, 255), kLayerTolerance);
}

TEST_F(KNDrawBrilliantRingTest, TheAlphaMapChoosesTheZoomedBackground) {
    // A grey ramp reading about 255 u: grey survives the hue shift, so the output is the
    // ramp where it is read, plus 1/255.
    KNDrawBrilliantRing ring;
    cover(ring);
    RingImages images = faintlyLit(std::make_unique<LayerTexture>(
        256, 1,
        [](int x, int) {
            const auto v = static_cast<uint8_t>(std::lround(255.0 * (x + 0.5) / 256));
            return Texel{v, v, v, 255};
        },
        GL_LINEAR));
    images.bind(ring);
    ring.draw();
    // Zoomed: u' = 0.05 + 0.9 u at the pixel centres u = 0.5 / 64 and 63.5 / 64.
    EXPECT_NEAR(channel(pixel(0, 32), 24), 255 * (0.05 + 0.9 * 0.5 / 64) + 1, kLayerTolerance);
    EXPECT_NEAR(channel(pixel(63, 32), 24), 255 * (0.05 + 0.9 * 63.5 / 64) + 1, kLayerTolerance);

    // Alpha map 0: the background at the plain coordinates.
    images.alpha = uniform({0, 0, 0, 255});
    images.bind(ring);
    ring.draw();
    EXPECT_NEAR(channel(pixel(0, 32), 24), 255 * 0.5 / 64 + 1, kLayerTolerance);
    EXPECT_NEAR(channel(pixel(63, 32), 24), 255 * 63.5 / 64 + 1, kLayerTolerance);
}

TEST_F(KNDrawBrilliantRingTest, TheDiamondIsReadUpsideDownAndUnlitPixelsShowTheBackground) {
    KNDrawBrilliantRing ring;
    cover(ring);
    ring.setAlpha(0.5f);
    // Image row 0 lit, row 1 dark; sampled nearest.
    const std::vector<uint8_t> topRowBlue = texels(1, 2, [](int, int y) {
        return Texel{0, 0, static_cast<uint8_t>(y == 0 ? 255 : 0), 255};
    });
    const std::vector<uint8_t> topRowRed = texels(1, 2, [](int, int y) {
        return Texel{static_cast<uint8_t>(y == 0 ? 255 : 0), 0, 0, 255};
    });
    RingImages images;
    images.background = uniform({51, 102, 153, 255});
    images.shine = uniform({0, 0, 0, 255});
    images.diamond = std::make_unique<LayerTexture>(1, 2, topRowBlue);
    images.alpha = uniform({0, 0, 0, 255});
    images.blur = uniform({0, 0, 0, 255});
    images.bind(ring);
    ring.draw();
    // Row 0 (v = 0) of the diamond lights the bottom of the surface: alpha 1 is added to the
    // background there. The top is unlit: the background alone. Output alpha is uAlpha.
    EXPECT_PIXEL_NEAR(pixel(32, 8), rgba(255, 255, 255, 128), 1);
    EXPECT_PIXEL_NEAR(pixel(32, 56), rgba(51, 102, 153, 128), 1);

    // The shine is read the right way up: its row 0 lights the top.
    images.diamond = uniform({0, 0, 0, 255});
    images.shine = std::make_unique<LayerTexture>(1, 2, topRowRed);
    images.bind(ring);
    ring.draw();
    EXPECT_PIXEL_NEAR(pixel(32, 56), rgba(255, 255, 255, 128), 1);
    EXPECT_PIXEL_NEAR(pixel(32, 8), rgba(51, 102, 153, 128), 1);

    // The diamond's blue is divided by its alpha: 0.251 / 0.502 = 0.5 is added.
    images.shine = uniform({0, 0, 0, 255});
    images.diamond = uniform({0, 0, 64, 128});
    images.bind(ring);
    ring.draw();
    EXPECT_PIXEL_NEAR(pixel(32, 32), rgba(179, 230, 255, 128), kLayerTolerance);
}

TEST_F(KNDrawBrilliantRingTest, BindsItsFiveImagesToUnitsZeroToFourInOrder) {
    KNDrawBrilliantRing ring;
    cover(ring);
    ring.setBackgroundTextureID(11);
    ring.setShineTextureID(12);
    ring.setDiamondTextureID(13);
    ring.setAlphaTextureID(14);
    ring.setBlurTextureID(15);
    ring.draw();
    expectSamplers(ring.getShaderManager()->getProgram(), {{"uBackgroundMap", 11},
                                                           {"uShineMap", 12},
                                                           {"uDiamondMap", 13},
                                                           {"uAlphaMap", 14},
                                                           {"uBlurMap", 15}});
}

TEST_F(KNDrawBrilliantRingTest, BadInputIsLoggedAndDroppedUnsetTexturesAreBoundAsTheyAre) {
    KNDrawBrilliantRing ring;
    expectOneLogLineEach({[&] { ring.initialize(0, 0); }});
    EXPECT_TRUE(ring.getMesh()->vertex.empty());
    cover(ring);
    expectOneLogLineEach({[&] { ring.setSize(0, 10); }, [&] { ring.resizeSurface(10, -10); }});
    EXPECT_FLOAT_EQ(ring.getMesh()->vertex[3].x, 64);

    // Unset and zero textures are bound as they are and read black with alpha 1: nothing
    // lit, so the (black) background with the layer's alpha.
    ring.setAlpha(0.75f);
    for (unsigned int id : {kUnset, 0u}) {
        glClearColor(1, 1, 1, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        for (auto set :
             {&KNDrawBrilliantRing::setBackgroundTextureID, &KNDrawBrilliantRing::setShineTextureID,
              &KNDrawBrilliantRing::setDiamondTextureID, &KNDrawBrilliantRing::setAlphaTextureID,
              &KNDrawBrilliantRing::setBlurTextureID}) {
            (ring.*set)(id);
        }
        ring.draw();
        EXPECT_PIXEL_NEAR(pixel(32, 32), rgba(0, 0, 0, 191), 1);
    }
}

}  // namespace
