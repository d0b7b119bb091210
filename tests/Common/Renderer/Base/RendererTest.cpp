#include "Common/Renderer/Base/Renderer.h"

#include <array>
#include <glm/ext/matrix_relational.hpp>
#include <glm/geometric.hpp>
#include <glm/gtc/matrix_inverse.hpp>
#include <glm/gtc/matrix_transform.hpp>

#include "Common/Renderer/Base/Background.h"
#include "Common/Renderer/Base/BackgroundRenderer.h"
#include "Common/Renderer/Base/Implementation/DrawableMatrices.h"
#include "Common/Renderer/Base/LightRenderer.h"
#include "tests/Common/Renderer/Base/RenderCoreFixture.h"

namespace {

using namespace qam::test;
using vi::Background;
using vi::BackgroundRenderer;
using vi::Drawable;
using vi::LightRenderer;
using vi::Renderer;
using vi::ShaderProgram;
using vi::Uniform;

using RendererTest = RenderCoreTest;
using LightRendererTest = RenderCoreTest;
using ShaderProgramTest = RenderCoreTest;

TEST_F(RendererTest, StaticAttributesUploadOnceDynamicOnesEveryDrawWithDrawArrays) {
    Drawable still = strip({{-1, -1}, {0, -1}, {-1, 1}, {0, 1}});  // the left half
    Drawable moving = still;
    Renderer* stillRenderer = flat(still, kRed, true).release();
    std::unique_ptr<Renderer> movingRenderer = flat(moving, kRed, false);
    for (Drawable* drawable : {&still, &moving}) {  // both move to the right half
        for (glm::vec2& position : drawable->mPositions2) {
            position.x += 1.0f;
        }
    }
    GLCallCounter calls;
    stillRenderer->draw();
    stillRenderer->draw();
    EXPECT_EQ(pixel(16, 32), 0xFF0000FFu);  // still where it was added
    clearScreen();
    movingRenderer->draw();
    movingRenderer->draw();
    EXPECT_EQ(calls.count("glBufferData"), 2);
    EXPECT_EQ(pixel(48, 32), 0xFF0000FFu);

    const GLuint buffer = static_cast<GLuint>(stillRenderer->mAttributes[0]->mBuffer);
    delete stillRenderer;  // unlisted, its buffers deleted
    EXPECT_TRUE(mRenderers.size() == 1 && glIsBuffer(buffer) == GL_FALSE);
}

TEST_F(RendererTest, BuiltInsCarryTheDerivedMatricesAndOpacity) {
    const char* fragment =
        "precision mediump float; uniform float uOpacity;\n"
        "void main() { gl_FragColor = vec4(1.0, 0.0, 0.0, uOpacity); }";
    Drawable drawable =
        strip3({{-.25f, -.25f, 0}, {.25f, -.25f, 0}, {-.25f, .25f, 0}, {.25f, .25f, 0}});
    drawable.mModelMatrix = glm::translate(glm::mat4(1.0f), glm::vec3(0.5f, 0.0f, 0.0f));
    drawable.mOpacity = 0.5f;
    *Drawable::mViewMatrix = glm::translate(glm::mat4(1.0f), glm::vec3(0.0f, 0.25f, 0.0f));
    glm::mat4& projection = *Drawable::mProjectionMatrix;
    projection[0][0] = 0.5f;
    projection[3][0] = 0.25f;

    const char* separate =
        "attribute vec3 aPosition;\n"
        "uniform mat4 uProjectionMatrix; uniform mat4 uViewMatrix; uniform mat4 uModelMatrix;\n"
        "void main() {\n"
        "    gl_Position = uProjectionMatrix * uViewMatrix * uModelMatrix * vec4(aPosition, 1.0);\n"
        "}";
    for (const char* vertex : {kMvpVertex, separate}) {
        clearScreen();
        Renderer renderer(program(vertex, fragment), drawable);
        renderer.addAttribute("aPosition", drawable.mPositions3.data(), 3, true);
        renderer.draw();
        // Centre (0.5, 0.25) in clip space, half size (0.125, 0.25): pixels x 44..51, y 32..47.
        EXPECT_PIXEL_NEAR(pixel(48, 40), 0xFF000080u, 1) << vertex;
        for (auto [x, y] : {std::pair{42, 40}, {48, 30}, {48, 49}}) {
            EXPECT_EQ(pixel(x, y), 0x00000000u) << x << ", " << y << " with " << vertex;
        }
    }
}

TEST_F(RendererTest, IndexedDrawReuploadsIndicesOnlyWhenFlaggedChanged) {
    Drawable drawable = strip();
    drawable.mIndices = {0, 1, 2};  // the lower-left half
    std::unique_ptr<Renderer> renderer = flat(drawable, kRed);
    renderer->draw();
    EXPECT_EQ(pixel(8, 8), 0xFF0000FFu);

    drawable.mIndices = {1, 3, 2};  // the upper-right half, not flagged yet
    renderer->draw();
    EXPECT_EQ(pixel(56, 56), 0x00000000u);
    drawable.mIsIndicesChanged = 1;
    clearScreen();
    renderer->draw();
    EXPECT_EQ(drawable.mIsIndicesChanged, 0);
    EXPECT_EQ(pixel(56, 56), 0xFF0000FFu);
}

TEST_F(RendererTest, SameTextureUnderTwoSamplersIsReadByBothAndPublishesItsSizes) {
    const char* fragment =
        "precision mediump float; uniform sampler2D uA; uniform sampler2D uB;\n"
        "uniform vec2 uASize; uniform vec2 uBTexelSize;\n"
        "void main() { gl_FragColor = vec4(texture2D(uA, vec2(0.5)).r,\n"
        "    texture2D(uB, vec2(0.5)).g, uASize.x / 255.0, uBTexelSize.y); }";
    const std::vector<uint32_t> texels(8, 0xFF0064C8u);  // RGBA bytes 200, 100, 0, 255
    std::unique_ptr<vi::Texture> texture4x2(texture(texels.data(), 4, 2));
    Drawable drawable = strip();
    Renderer renderer(program(kFlatVertex, fragment), drawable);
    renderer.addAttribute("aPosition", drawable.mPositions2.data(), 2, true);
    EXPECT_EQ(renderer.addTexture("uA", texture4x2.get()), 0);
    EXPECT_EQ(renderer.addTexture("uB", texture4x2.get()), 1);
    renderer.draw();
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0xC8640480u, 1);  // 200, 100, width 4, 1 / height
}

TEST_F(RendererTest, BlendingWeighsTheSourceByItsAlpha) {
    const glm::vec4 halfRed(1.0f, 0.0f, 0.0f, 0.5f);
    Drawable drawable = strip();
    std::unique_ptr<Renderer> renderer = flat(drawable, halfRed);
    clearScreen(kBlue);
    Renderer::setBlending(true);
    renderer->draw();
    Renderer::setBlending(false);
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0x800080BFu, 1);  // alpha: 0.5 + 1 * 0.5 * 0.5
}

// Null data is kept (GL allocates the buffer; the pointers can be set later) and a drawable
// without positions is drawn all the same. Only what GL or the draw would read through a
// null pointer is skipped, with one line per cause however often it is drawn.
TEST_F(RendererTest, NullDataIsKeptAndOnlyNullReadsAreSkippedWithOneLineEach) {
    LogCapture log;
    Drawable drawable;
    drawable.mDimension = 2;
    drawable.mIndices = {0, 1, 2};  // the lower-left half
    // Vertices to size the buffer by, none handed over yet: reading past a buffer is undefined.
    drawable.mPositions2 = strip().mPositions2;
    Renderer renderer(program(kFlatVertex, kFlatFragment), drawable);
    EXPECT_EQ(renderer.addAttribute("aPosition", nullptr, 2, false), 0);
    EXPECT_EQ(renderer.addUniform("uColor", nullptr, Uniform::kVec4, 1), 0);
    EXPECT_EQ(renderer.addTexture("uColor", nullptr), -1);
    GLCallCounter calls;
    renderer.draw();
    renderer.draw();
    EXPECT_EQ(calls.count("glDrawElements"), 2);

    renderer.mAttributes[0]->mData = drawable.mPositions2.data();
    renderer.mUniforms[0]->mData = &kRed;
    renderer.draw();
    EXPECT_EQ(pixel(8, 8), 0xFF0000FFu);

    renderer.setDrawable(nullptr);
    renderer.draw();
    renderer.draw();
    EXPECT_EQ(calls.count("glDrawElements"), 3);
    EXPECT_EQ(log.messages().size(), 2u);  // the uniform's value, the drawable
}

TEST_F(LightRendererTest, LitQuadShowsPhongAtItsCentre) {
    unsigned char texel[4] = {200, 100, 50, 255};
    vi::Texture texture(texel, 1, 1, true, false, false, false, false, 4, false);
    Drawable drawable = strip3();
    drawable.mTexture = &texture;
    drawable.mNormals.assign(4, glm::vec3(0.0f, 0.6f, 0.8f));
    drawable.mTextureCoords.assign(4, glm::vec2(0.5f));
    drawable.mOpacity = 0.8f;
    // Far enough that the corners, symmetric about the centre, see them in one direction
    // there, not so far that mediump overflows; the eye near the light's mirror direction.
    const glm::vec3 light = 40.0f * glm::vec3(0.5f, 0.3f, 2.0f);
    const glm::vec3 eye = 40.0f * glm::vec3(-0.7f, 2.6f, 1.2f);
    const float ambient = 0.2f, diffuse = 0.6f, specular = 0.3f, shininess = 8.0f;

    LightRenderer renderer(drawable);
    renderer.addUniform("uLightPosition", &light, Uniform::kVec3, 1);
    renderer.addUniform("uEyePosition", &eye, Uniform::kVec3, 1);
    renderer.addUniform("uAmbient", &ambient, Uniform::kFloat, 1);
    renderer.addUniform("uDiffuse", &diffuse, Uniform::kFloat, 1);
    renderer.addUniform("uSpecular", &specular, Uniform::kFloat, 1);
    renderer.addUniform("uShininess", &shininess, Uniform::kFloat, 1);
    renderer.draw();
    // texel (0.2 + 0.6 N.L) + 0.3 (R.E)^8 with N.L = 0.854, R.E = 1.000: 219.0, 147.8, 112.1;
    // alpha the opacity. mediump keeps about 10 bits: two steps of 8-bit output cover it.
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0xDB9470CCu, 2);
}

TEST_F(ShaderProgramTest, DestroyCountsReferencesAndInitKeepsALiveProgram) {
    ShaderProgram* shared = &program(kFlatVertex, kFlatFragment);
    ShaderProgram::addProgram(shared);  // listed twice
    ShaderProgram* other = &program(kFlatVertex, kFlatFragment);
    const GLuint name = shared->mProgram;
    shared->mReferenceCount = 2;  // a second owner shares it
    shared->destroy();
    EXPECT_EQ(mShaders, (std::vector<ShaderProgram*>{shared, shared, other}));
    EXPECT_EQ(glIsProgram(name), GL_TRUE);
    shared->destroy();
    EXPECT_EQ(mShaders, std::vector<ShaderProgram*>{other});
    EXPECT_EQ(glIsProgram(name), GL_FALSE);

    GLCallCounter calls;
    other->init();  // live: only checked, its locations kept
    EXPECT_EQ(calls.total(), 1);
}

template <typename Matrix>
bool near(const Matrix& actual, const Matrix& expected) {
    return glm::all(glm::equal(actual, expected, 1e-5f));
}

TEST(DrawableMatrices, ProductsMatchGlmAndReadOnlyTheEntriesTheyMayUse) {
    glm::mat4 model = glm::translate(glm::mat4(1.0f), glm::vec3(3.0f, -2.0f, 0.5f));
    model = glm::rotate(model, 0.7f, glm::normalize(glm::vec3(1.0f, 2.0f, -0.5f)));
    model = glm::scale(model, glm::vec3(2.0f, 0.5f, 1.5f));
    EXPECT_TRUE(near(qam::normalMatrixOf(model), glm::inverseTranspose(glm::mat3(model))));

    // The model-view is an affine product: the bottom row is forced, never read.
    const glm::mat4 view = glm::lookAt(glm::vec3(1, 2, 5), glm::vec3(0), glm::vec3(0, 1, 0));
    const glm::mat4 modelView = view * model;
    glm::mat4 skewed = model;
    skewed[0][3] = 7.0f;
    skewed[3][3] = 2.0f;
    EXPECT_TRUE(near(qam::affineProduct(view, skewed), modelView));

    // The MVP reads only the entries of a symmetric perspective projection.
    const glm::mat4 perspective = glm::perspective(1.0f, 0.6f, 1.0f, 100.0f);
    glm::mat4 cluttered = perspective;
    for (int index : {1, 2, 3, 4, 6, 7, 8, 9}) {
        cluttered[index / 4][index % 4] = 9.0f;
    }
    EXPECT_TRUE(near(qam::sparseProjectionProduct(cluttered, modelView), perspective * modelView));
}

// An 8 x 4 texture of 4 x 4 cells, each 2 texels wide and 1 high, so its aspect is 2.
// Cell (column, row), row 0 first in memory, has the colour below.
uint32_t cellColour(int column, int row) {
    return uint32_t(column * 60 + 20) << 24 | uint32_t(row * 60 + 20) << 16 | 200u << 8 | 255u;
}

using Probe = std::array<int, 4>;  // screen x, y (upwards), expected column, row

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
        for (auto [x, y, column, row] : probes) {
            EXPECT_EQ(pixel(x, y), cellColour(column, row)) << "at (" << x << ", " << y << ")";
        }
    }

    std::vector<uint32_t> mTexels = [] {
        std::vector<uint32_t> texels;
        for (int texel = 0; texel < 8 * 4; ++texel) {
            texels.push_back(__builtin_bswap32(cellColour(texel % 8 / 2, texel / 8)));  // RGBA
        }
        return texels;
    }();
    vi::Texture mTexture{mTexels.data(), 8, 4, true, false, false, false, false, 4, false};
};

TEST_F(BackgroundTest, AspectFillShowsTheCentreOfTheImageWithTheFirstRowOnTop) {
    Background background(mTexture);
    // Portrait: columns 1 and 2 only, all rows.
    expectCrop(background, 32, 64,
               {{8, 56, 1, 0}, {24, 56, 2, 0}, {8, 8, 1, 3}, {0, 40, 1, 1}, {31, 24, 2, 2}});
    // Landscape: all columns, rows 1 and 2 only.
    expectCrop(background, 64, 16,
               {{8, 12, 0, 1}, {56, 12, 3, 1}, {8, 4, 0, 2}, {40, 0, 2, 2}, {24, 15, 1, 1}});
}

// A drawable whose coordinates come after its renderer: the attribute is kept without data,
// and updateTextureCoords() hands it the coordinates, static or not.
TEST_F(BackgroundTest, CoordinatesFilledAfterTheRendererAreTakenByUpdateTextureCoords) {
    for (bool isStatic : {true, false}) {
        SCOPED_TRACE(isStatic ? "static" : "streamed");
        clearScreen();
        Drawable drawable = strip();
        drawable.mTexture = &mTexture;
        drawable.mIsTextureCoordsStatic = isStatic;
        BackgroundRenderer renderer(drawable);
        drawable.mTextureCoords = {{0, 1}, {1, 1}, {0, 0}, {1, 0}};  // first row on top
        renderer.updateTextureCoords();
        renderer.draw();
        EXPECT_EQ(pixel(1, 1), cellColour(0, 3));
        EXPECT_EQ(pixel(kWidth - 2, kHeight - 2), cellColour(3, 0));
    }
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
