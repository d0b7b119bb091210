#include "Common/Renderer/Base/Renderer.h"

#include <GLES2/gl2.h>

#include <glm/gtc/matrix_transform.hpp>
#include <string>
#include <vector>

#include "tests/Common/Renderer/Base/RenderCoreFixture.h"
#include "tests/support/GLCallCounter.h"
#include "tests/support/LogCapture.h"

namespace {

using qam::test::fullQuad;
using qam::test::GLCallCounter;
using qam::test::kFlatFragment;
using qam::test::kFlatVertex;
using qam::test::LogCapture;
using vi::Drawable;
using vi::Renderer;
using vi::Uniform;

const glm::vec4 kRed(1.0f, 0.0f, 0.0f, 1.0f);

std::vector<std::string> uniformNames(const Renderer& renderer) {
    std::vector<std::string> names;
    for (const auto& uniform : renderer.mUniforms) {
        names.push_back(uniform->mName);
    }
    return names;
}

class RendererTest : public qam::test::RenderCoreTest {
  protected:
    // A flat red renderer over the drawable's vec2 positions.
    Renderer* flat(Drawable& drawable, bool isStatic = false) {
        auto* renderer = new Renderer(program(kFlatVertex, kFlatFragment), drawable);
        renderer->addAttribute("aPosition", drawable.mPositions2.data(), 2, isStatic);
        renderer->addUniform("uColor", &kRed, Uniform::kVec4, 1);
        return renderer;
    }
    void clearScreen() {
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT);
    }
};

TEST_F(RendererTest, TwoDimensionalDrawableIsDrawnWithDrawArraysOverItsVec2Positions) {
    Drawable drawable;
    drawable.mMode = GL_TRIANGLE_STRIP;
    drawable.mDimension = 2;
    drawable.mPositions2 = {{-1.0f, -1.0f}, {0.0f, -1.0f}, {-1.0f, 1.0f}, {0.0f, 1.0f}};
    drawable.mPositions3.resize(3);  // ignored in two dimensions
    Renderer* renderer = flat(drawable);
    EXPECT_EQ(mRenderers, std::vector<Renderer*>{renderer});
    EXPECT_EQ(renderer->mIndexBuffer, -1);
    EXPECT_EQ(renderer->mVertexCount, 4u);
    // The shader declares none of the six built-ins: only its own uniform is kept.
    EXPECT_EQ(uniformNames(*renderer), std::vector<std::string>{"uColor"});

    GLCallCounter calls;
    renderer->draw();
    EXPECT_EQ(calls.count("glDrawArrays"), 1);
    EXPECT_EQ(calls.count("glDrawElements"), 0);
    EXPECT_EQ(pixel(16, 32), 0xFF0000FFu);
    EXPECT_EQ(pixel(48, 32), 0x00000000u);

    const GLuint buffer = static_cast<GLuint>(renderer->mAttributes[0]->mBuffer);
    delete renderer;
    EXPECT_TRUE(mRenderers.empty());
    EXPECT_EQ(glIsBuffer(buffer), GL_FALSE);
}

TEST_F(RendererTest, BuiltInsCarryTheDerivedMatricesAndOpacity) {
    const char* vertex =
        "attribute vec3 aPosition;\n"
        "uniform mat4 uModelViewProjectionMatrix;\n"
        "void main() { gl_Position = uModelViewProjectionMatrix * vec4(aPosition, 1.0); }\n";
    const char* fragment =
        "precision mediump float;\n"
        "uniform float uOpacity;\n"
        "void main() { gl_FragColor = vec4(1.0, 0.0, 0.0, uOpacity); }\n";
    Drawable drawable;
    drawable.mMode = GL_TRIANGLE_STRIP;
    drawable.mPositions3 = {
        {-0.25f, -0.25f, 0.0f}, {0.25f, -0.25f, 0.0f}, {-0.25f, 0.25f, 0.0f}, {0.25f, 0.25f, 0.0f}};
    drawable.mModelMatrix = glm::translate(glm::mat4(1.0f), glm::vec3(0.5f, 0.0f, 0.0f));
    drawable.mOpacity = 0.5f;
    *Drawable::mViewMatrix = glm::translate(glm::mat4(1.0f), glm::vec3(0.0f, 0.25f, 0.0f));
    glm::mat4& projection = *Drawable::mProjectionMatrix;
    projection[0][0] = 0.5f;
    projection[3][0] = 0.25f;
    projection[0][1] = 5.0f;  // outside the entries a projection may use: ignored

    Renderer renderer(program(vertex, fragment), drawable);
    renderer.addAttribute("aPosition", drawable.mPositions3.data(), 3, true);
    EXPECT_EQ(uniformNames(renderer),
              (std::vector<std::string>{"uModelViewProjectionMatrix", "uOpacity"}));
    renderer.draw();

    // Centre (0.5, 0.25) in clip space, half size (0.125, 0.25): pixels x 44..51, y 32..47.
    EXPECT_PIXEL_NEAR(pixel(48, 40), 0xFF000080u, 1);
    EXPECT_EQ(pixel(42, 40), 0x00000000u);
    EXPECT_EQ(pixel(48, 30), 0x00000000u);
    EXPECT_EQ(pixel(48, 49), 0x00000000u);
}

TEST_F(RendererTest, IndexedDrawReuploadsIndicesOnlyWhenFlaggedChanged) {
    Drawable drawable;
    drawable.mDimension = 2;
    drawable.mPositions2 = fullQuad();
    drawable.mIndices = {0, 1, 2};  // the lower-left half
    std::unique_ptr<Renderer> renderer(flat(drawable, true));
    ASSERT_NE(renderer->mIndexBuffer, -1);

    GLCallCounter calls;
    renderer->draw();
    EXPECT_EQ(calls.count("glDrawElements"), 1);
    EXPECT_EQ(calls.count("glDrawArrays"), 0);
    EXPECT_EQ(pixel(8, 8), 0xFF0000FFu);
    EXPECT_EQ(pixel(56, 56), 0x00000000u);

    drawable.mIndices = {1, 3, 2};  // the upper-right half, not flagged yet
    clearScreen();
    renderer->draw();
    EXPECT_EQ(pixel(8, 8), 0xFF0000FFu);
    EXPECT_EQ(calls.count("glBufferData"), 0);

    drawable.mIsIndicesChanged = 1;
    clearScreen();
    renderer->draw();
    EXPECT_EQ(calls.count("glBufferData"), 1);
    EXPECT_EQ(drawable.mIsIndicesChanged, 0);
    EXPECT_EQ(pixel(8, 8), 0x00000000u);
    EXPECT_EQ(pixel(56, 56), 0xFF0000FFu);
}

TEST_F(RendererTest, StaticAttributeIsNeverReuploadedWhileADynamicOneIsEveryDraw) {
    Drawable still;
    still.mMode = GL_TRIANGLE_STRIP;
    still.mDimension = 2;
    still.mPositions2 = {{-1.0f, -1.0f}, {0.0f, -1.0f}, {-1.0f, 1.0f}, {0.0f, 1.0f}};
    Drawable moving = still;
    std::unique_ptr<Renderer> stillRenderer(flat(still, true));
    std::unique_ptr<Renderer> movingRenderer(flat(moving, false));

    // Both move to the right half in client memory.
    for (Drawable* drawable : {&still, &moving}) {
        for (glm::vec2& position : drawable->mPositions2) {
            position.x += 1.0f;
        }
    }
    GLCallCounter calls;
    stillRenderer->draw();
    stillRenderer->draw();
    EXPECT_EQ(calls.count("glBufferData"), 0);
    EXPECT_EQ(pixel(16, 32), 0xFF0000FFu);  // still where it was added
    EXPECT_EQ(pixel(48, 32), 0x00000000u);

    clearScreen();
    movingRenderer->draw();
    movingRenderer->draw();
    EXPECT_EQ(calls.count("glBufferData"), 2);
    EXPECT_EQ(pixel(16, 32), 0x00000000u);
    EXPECT_EQ(pixel(48, 32), 0xFF0000FFu);
}

TEST_F(RendererTest, AttributeAddedBeforeTheVerticesExistIsSizedEmpty) {
    Drawable drawable;
    drawable.mMode = GL_TRIANGLE_STRIP;
    drawable.mDimension = 2;
    drawable.mPositions2.reserve(4);  // a data pointer, no vertices yet
    std::unique_ptr<Renderer> renderer(flat(drawable, true));
    GLint bytes = -1;
    glBindBuffer(GL_ARRAY_BUFFER, static_cast<GLuint>(renderer->mAttributes[0]->mBuffer));
    glGetBufferParameteriv(GL_ARRAY_BUFFER, GL_BUFFER_SIZE, &bytes);
    EXPECT_EQ(bytes, 0);
}

TEST_F(RendererTest, SameTextureUnderTwoSamplersTakesTwoUnitsAndPublishesItsSizes) {
    const char* fragment =
        "precision mediump float;\n"
        "uniform sampler2D uA;\n"
        "uniform sampler2D uB;\n"
        "uniform vec2 uASize;\n"
        "uniform vec2 uBTexelSize;\n"
        "void main() {\n"
        "    gl_FragColor = vec4(texture2D(uA, vec2(0.5)).r, texture2D(uB, vec2(0.5)).g,\n"
        "                        uASize.x / 255.0, uBTexelSize.y);\n"
        "}\n";
    std::vector<unsigned char> texels(4 * 2 * 4);
    for (size_t i = 0; i < texels.size(); i += 4) {
        texels[i] = 200;
        texels[i + 1] = 100;
        texels[i + 3] = 255;
    }
    vi::Texture texture(texels.data(), 4, 2, true, false, false, false, false, 4, false);
    Drawable drawable;
    drawable.mMode = GL_TRIANGLE_STRIP;
    drawable.mDimension = 2;
    drawable.mPositions2 = fullQuad();
    Renderer renderer(program(kFlatVertex, fragment), drawable);
    renderer.addAttribute("aPosition", drawable.mPositions2.data(), 2, true);
    EXPECT_EQ(renderer.addTexture("uA", &texture), 0);
    EXPECT_EQ(renderer.addTexture("uB", &texture), 1);
    EXPECT_NE(texture.mTexture, 0u);  // allocated when added
    EXPECT_TRUE(renderer.mSources.empty());
    // Unused by the shader: "uATexelSize" and "uBSize" are dropped.
    EXPECT_EQ(uniformNames(renderer), (std::vector<std::string>{"uASize", "uBTexelSize"}));

    GLCallCounter calls;
    renderer.draw();
    EXPECT_EQ(calls.count("glUniform1i"), 2);
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0xC8640480u, 1);  // 200, 100, width 4, 1 / height
    glActiveTexture(GL_TEXTURE1);
    EXPECT_EQ(integer(GL_TEXTURE_BINDING_2D), static_cast<GLint>(texture.mTexture));
    glActiveTexture(GL_TEXTURE0);
    GLint unit = -1;
    glGetUniformiv(renderer.mProgram->mProgram, renderer.mTextures[1].second, &unit);
    EXPECT_EQ(unit, 1);
}

TEST_F(RendererTest, UniformTypeBeyondVec4IsKeptButNeverUploaded) {
    const char* fragment =
        "precision mediump float;\n"
        "uniform float uValue;\n"
        "void main() { gl_FragColor = vec4(uValue, 1.0 - uValue, 0.0, 1.0); }\n";
    const float one = 1.0f;
    Drawable drawable;
    drawable.mMode = GL_TRIANGLE_STRIP;
    drawable.mDimension = 2;
    drawable.mPositions2 = fullQuad();
    Renderer renderer(program(kFlatVertex, fragment), drawable);
    renderer.addAttribute("aPosition", drawable.mPositions2.data(), 2, true);
    EXPECT_EQ(renderer.addUniform("uValue", &one, static_cast<Uniform::UniformType>(11), 1), 0);

    renderer.draw();
    EXPECT_EQ(pixel(32, 32), 0x00FF00FFu);  // still the default 0

    renderer.mUniforms[0]->mType = Uniform::kFloat;
    renderer.draw();
    EXPECT_EQ(pixel(32, 32), 0xFF0000FFu);
}

TEST_F(RendererTest, StateHelpersBlendAndMaskWhatIsDrawn) {
    const glm::vec4 halfRed(1.0f, 0.0f, 0.0f, 0.5f);
    Drawable drawable;
    drawable.mMode = GL_TRIANGLE_STRIP;
    drawable.mDimension = 2;
    drawable.mPositions2 = fullQuad();
    std::unique_ptr<Renderer> renderer(flat(drawable, true));
    renderer->mUniforms[0]->mData = &halfRed;

    glClearColor(0.0f, 0.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    Renderer::setBlending(true);
    renderer->draw();
    Renderer::setBlending(false);
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0x800080BFu, 1);  // alpha: 0.5 + 1 * 0.5 * 0.5

    Renderer::setColorMask(false, true, true, true);
    renderer->draw();
    Renderer::setColorMask(true, true, true, true);
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0x80000080u, 1);  // red kept from before

    Renderer::setCullFace(true, true);
    EXPECT_EQ(integer(GL_CULL_FACE_MODE), GL_BACK);
    Renderer::setCullFace(false, true);
    Renderer::setDepthTest(true, false, false);
    EXPECT_EQ(integer(GL_DEPTH_FUNC), GL_GREATER);
    Renderer::setDepthTest(false, true, false);
    EXPECT_EQ(glIsEnabled(GL_DEPTH_TEST), GL_FALSE);
}

TEST_F(RendererTest, BadInputIsDroppedWithOneLineEach) {
    LogCapture log;
    Drawable drawable;
    drawable.mDimension = 2;
    drawable.mIndices = {0, 1, 2};  // indices, but no positions to index
    Renderer renderer(program(kFlatVertex, kFlatFragment), drawable);
    EXPECT_EQ(renderer.addAttribute("aPosition", nullptr, 2, false), -1);
    EXPECT_EQ(renderer.addUniform("uColor", nullptr, Uniform::kVec4, 1), -1);
    EXPECT_EQ(renderer.addTexture("uColor", nullptr), -1);
    renderer.setDrawable(nullptr);
    EXPECT_EQ(renderer.mDrawable, &drawable);

    GLCallCounter calls;
    renderer.draw();
    renderer.draw();
    EXPECT_EQ(calls.count("glDrawElements"), 0);
    EXPECT_EQ(log.messages(), (std::vector<std::string>{
                                  "Renderer: attribute \"aPosition\" has no data, dropped",
                                  "Renderer: uniform \"uColor\" has no data, dropped",
                                  "Renderer: no texture for sampler \"uColor\", dropped",
                                  "Renderer: null drawable ignored, the renderer keeps its own",
                                  "Renderer: drawable has no positions, draw skipped",
                              }));
}

}  // namespace
