#include "Common/Renderer/Base/Background.h"

#include "Common/Renderer/Base/BackgroundRenderer.h"
#include "tests/Common/Renderer/Base/RenderCoreFixture.h"

namespace {

using namespace qam::test;
using vi::Background;
using vi::BackgroundRenderer;
using vi::ShaderProgram;
using Coords = std::vector<glm::vec2>;

// An 8 x 4 texture of 4 x 4 cells, each 2 texels wide and 1 high, so its aspect is 2.
// Cell (column, row), row 0 first in memory, has the colour below.
uint32_t cellColour(int column, int row) {
    return uint32_t(column * 60 + 20) << 24 | uint32_t(row * 60 + 20) << 16 | 200u << 8 | 255u;
}

struct Probe {
    int x, y, column, row;  // screen pixel (y upwards), expected cell
};

std::vector<uint32_t> cellTexels() {
    std::vector<uint32_t> texels;
    for (int texel = 0; texel < 8 * 4; ++texel) {
        texels.push_back(__builtin_bswap32(cellColour(texel % 8 / 2, texel / 8)));  // RGBA bytes
    }
    return texels;
}

class BackgroundTest : public RenderCoreTest {
  protected:
    // Draws `background` on a `width` x `height` screen and checks the probes.
    void expectCrop(Background& background, int width, int height,
                    const std::vector<Probe>& probes) {
        SCOPED_TRACE(testing::Message() << width << " x " << height);
        gl().resize(width, height);
        glViewport(0, 0, width, height);
        background.setScreenSize(width, height);
        background.renderFrame();
        for (const Probe& probe : probes) {
            EXPECT_EQ(pixel(probe.x, probe.y), cellColour(probe.column, probe.row))
                << "at (" << probe.x << ", " << probe.y << ")";
        }
    }

    std::vector<uint32_t> mTexels = cellTexels();
    vi::Texture mTexture{mTexels.data(), 8, 4, true, false, false, false, false, 4, false};
};

TEST_F(BackgroundTest, AspectFillShowsTheCentreOfTheImageWithTheFirstRowOnTop) {
    Background background(mTexture);
    ASSERT_EQ(mRenderers, std::vector<vi::Renderer*>{background.mRenderer.get()});
    // Portrait: columns 1 and 2 only, all rows.
    expectCrop(background, 32, 64,
               {{8, 56, 1, 0}, {24, 56, 2, 0}, {8, 8, 1, 3}, {0, 40, 1, 1}, {31, 24, 2, 2}});
    EXPECT_EQ(background.mDrawable.mTextureCoords,
              (Coords{{0.375f, 0}, {0.625f, 0}, {0.375f, 1}, {0.625f, 1}}));
    // Landscape: all columns, rows 1 and 2 only.
    expectCrop(background, 64, 16,
               {{8, 12, 0, 1}, {56, 12, 3, 1}, {8, 4, 0, 2}, {40, 0, 2, 2}, {24, 15, 1, 1}});
    // The texture's own aspect: the whole image.
    expectCrop(background, 32, 16, {{4, 14, 0, 0}, {28, 14, 3, 0}, {4, 1, 0, 3}, {20, 6, 2, 2}});
    EXPECT_EQ(background.mDrawable.mTextureCoords, (Coords{{0, 0}, {1, 0}, {0, 1}, {1, 1}}));
}

TEST_F(BackgroundTest, RenderersOfAnEffectShareOneProgramThatTheFirstToGoDestroys) {
    vi::Drawable drawable;
    auto* one = new BackgroundRenderer(drawable);
    auto* two = new BackgroundRenderer(drawable);
    ShaderProgram* shared = one->mProgram;
    EXPECT_EQ(two->mProgram, shared);
    EXPECT_EQ(mShaders, std::vector<ShaderProgram*>{shared});
    delete one;
    EXPECT_TRUE(mShaders.empty());
    delete two;  // makes the program again only to destroy it
    EXPECT_TRUE(mShaders.empty());

    // A background still draws after a short-lived one destroyed the shared program, as
    // drawBgOnly's do.
    Background kept(mTexture);
    kept.setScreenSize(kWidth, kHeight);
    delete new Background(mTexture);
    kept.renderFrame();
    EXPECT_EQ(pixel(1, 1), cellColour(1, 3));
}

}  // namespace
