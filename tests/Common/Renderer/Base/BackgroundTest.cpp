#include "Common/Renderer/Base/Background.h"

#include <GLES2/gl2.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "Common/Renderer/Base/BackgroundRenderer.h"
#include "tests/Common/Renderer/Base/RenderCoreFixture.h"
#include "tests/support/LogCapture.h"

namespace {

using qam::test::LogCapture;
using vi::Background;
using vi::BackgroundRenderer;
using vi::ShaderProgram;

// An 8 x 4 texture of 4 x 4 cells, each 2 texels wide and 1 high, so its aspect is 2.
// Cell (column, row), row 0 first in memory, has the colour below.
uint32_t cellColour(int column, int row) {
    return uint32_t(column * 60 + 20) << 24 | uint32_t(row * 60 + 20) << 16 | 200u << 8 | 255u;
}

std::vector<unsigned char> cellTexels() {
    std::vector<unsigned char> texels;
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 8; ++x) {
            const uint32_t colour = cellColour(x / 2, y);
            for (int shift : {24, 16, 8, 0}) {
                texels.push_back(static_cast<unsigned char>(colour >> shift));
            }
        }
    }
    return texels;
}

struct Probe {
    int x, y;         // screen pixel, y upwards
    int column, row;  // expected cell
};

class BackgroundTest : public qam::test::RenderCoreTest {
  protected:
    BackgroundTest()
        : mTexels(cellTexels()),
          mTexture(mTexels.data(), 8, 4, true, false, false, false, false, 4, false) {}

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

    std::vector<unsigned char> mTexels;
    vi::Texture mTexture;
};

TEST_F(BackgroundTest, AspectFillShowsTheCentreOfTheImageWithTheFirstRowOnTop) {
    Background background(mTexture);
    ASSERT_EQ(mRenderers, std::vector<vi::Renderer*>{background.mRenderer.get()});

    // Portrait: columns 1 and 2 only, all rows.
    expectCrop(background, 32, 64,
               {{8, 56, 1, 0}, {24, 56, 2, 0}, {8, 8, 1, 3}, {0, 40, 1, 1}, {31, 24, 2, 2}});
    EXPECT_EQ(background.mDrawable.mTextureCoords,
              (std::vector<glm::vec2>{{0.375f, 0}, {0.625f, 0}, {0.375f, 1}, {0.625f, 1}}));
    // Landscape: all columns, rows 1 and 2 only.
    expectCrop(background, 64, 16,
               {{8, 12, 0, 1}, {56, 12, 3, 1}, {8, 4, 0, 2}, {40, 0, 2, 2}, {24, 15, 1, 1}});
    // The texture's own aspect: the whole image.
    expectCrop(background, 32, 16, {{4, 14, 0, 0}, {28, 14, 3, 0}, {4, 1, 0, 3}, {20, 6, 2, 2}});
    EXPECT_EQ(background.mDrawable.mTextureCoords,
              (std::vector<glm::vec2>{{0, 0}, {1, 0}, {0, 1}, {1, 1}}));
}

TEST_F(BackgroundTest, StaticTextureCoordinatesChangeOnlyThroughUpdate) {
    vi::Drawable drawable;
    drawable.mMode = GL_TRIANGLE_STRIP;
    drawable.mDimension = 2;
    drawable.mTexture = &mTexture;
    drawable.mPositions2 = {{-1, 1}, {1, 1}, {-1, -1}, {1, -1}};
    drawable.mTextureCoords = {{0, 0}, {1, 0}, {0, 1}, {1, 1}};
    drawable.mIsTextureCoordsStatic = 1;
    BackgroundRenderer renderer(drawable);
    ASSERT_EQ(renderer.mTextureCoordsIndex, 1);

    // Zoom into cell (3, 3), the bottom-right one.
    drawable.mTextureCoords = {{0.8f, 0.8f}, {0.9f, 0.8f}, {0.8f, 0.9f}, {0.9f, 0.9f}};
    renderer.draw();
    EXPECT_EQ(pixel(8, 56), cellColour(0, 0));  // the upload at construction still holds
    renderer.updateTextureCoords();
    renderer.draw();
    EXPECT_EQ(pixel(8, 56), cellColour(3, 3));
    EXPECT_EQ(pixel(56, 8), cellColour(3, 3));
}

TEST_F(BackgroundTest, RenderersOfAnEffectShareOneProgramThatTheFirstToGoDestroys) {
    vi::Drawable first;
    vi::Drawable second;
    auto* one = new BackgroundRenderer(first);
    auto* two = new BackgroundRenderer(second);
    ShaderProgram* shared = one->mProgram;
    EXPECT_EQ(two->mProgram, shared);
    EXPECT_EQ(mShaders, std::vector<ShaderProgram*>{shared});
    const GLuint name = shared->mProgram;

    delete one;
    EXPECT_TRUE(mShaders.empty());
    EXPECT_EQ(glIsProgram(name), GL_FALSE);
    delete two;  // makes the program again only to destroy it
    EXPECT_TRUE(mShaders.empty());
}

TEST_F(BackgroundTest, ABackgroundStillDrawsAfterAShortLivedOneDestroyedTheSharedProgram) {
    Background kept(mTexture);
    kept.setScreenSize(kWidth, kHeight);
    delete new Background(mTexture);  // what drawBgOnly does each time
    EXPECT_TRUE(mShaders.empty());
    kept.renderFrame();
    EXPECT_EQ(pixel(1, 1), cellColour(1, 3));
    EXPECT_EQ(mShaders, std::vector<ShaderProgram*>{kept.mRenderer->mProgram});
}

TEST_F(BackgroundTest, AnotherEffectGetsItsOwnProgramUnderTheSameId) {
    vi::Drawable drawable;
    auto* here = new BackgroundRenderer(drawable);
    std::vector<ShaderProgram*> otherShaders;
    ShaderProgram::mAllShaders = &otherShaders;
    auto* there = new BackgroundRenderer(drawable);
    EXPECT_NE(there->mProgram, here->mProgram);
    EXPECT_EQ(there->mProgram->getUniqueId(), here->mProgram->getUniqueId());
    EXPECT_EQ(otherShaders, std::vector<ShaderProgram*>{there->mProgram});
    delete there;
    EXPECT_TRUE(otherShaders.empty());
    ShaderProgram::mAllShaders = &mShaders;
    EXPECT_EQ(mShaders, std::vector<ShaderProgram*>{here->mProgram});
    delete here;
}

TEST_F(BackgroundTest, BadInputIsDroppedWithOneLineEach) {
    LogCapture log;
    vi::Texture empty(nullptr, 0, 4, true, false, false, false, false, 4, false);
    Background background(empty);
    background.setScreenSize(32, 0);
    EXPECT_EQ(background.mDrawable.mTextureCoords,
              (std::vector<glm::vec2>{{0, 0}, {1, 0}, {0, 1}, {1, 1}}));
    background.mDrawable.mTextureCoords.clear();
    background.mRenderer->updateTextureCoords();
    EXPECT_EQ(log.count("Background: screen 32x0 over texture 0x4 has no aspect, crop kept"), 1);
    EXPECT_EQ(log.count("BackgroundRenderer: 0 texture coordinates for 4 vertices, kept the old"),
              1);

    vi::Drawable untextured;
    BackgroundRenderer renderer(untextured);
    EXPECT_EQ(log.count("Renderer: no texture for sampler \"uTexture\", dropped"), 1);
}

}  // namespace
