#include "Common/Effect/Effect.h"

#include <glm/glm.hpp>

#include "Common/Effect/EventHolder.h"
#include "Common/Renderer/Base/Drawable.h"
#include "Common/Renderer/Base/Renderer.h"
#include "Common/Renderer/Base/ShaderProgram.h"
#include "Common/Renderer/Base/Texture.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace {

class EffectTest : public qam::test::GLTest {};

TEST_F(EffectTest, OrthoProjectionMapsTheScreenCornersToClipSpace) {
    vi::EventHolder effect;
    effect.makeCurrent();
    effect.initEffect(720, 1280);
    const glm::mat4& projection = *vi::Drawable::mProjectionMatrix;
    const glm::vec4 origin = projection * glm::vec4(0, 0, 0, 1);
    const glm::vec4 corner = projection * glm::vec4(720, 1280, 0, 1);
    EXPECT_EQ(glm::vec2(origin), glm::vec2(-1, -1));
    EXPECT_FLOAT_EQ(corner.x, 1.0f);
    EXPECT_FLOAT_EQ(corner.y, 1.0f);
    EXPECT_EQ(projection[2][2], -0.001f);
    EXPECT_EQ(*vi::Drawable::mViewMatrix, glm::mat4(1.0f));
    EXPECT_FALSE(effect.mIsLandscape);
    EXPECT_EQ(effect.mInvScreenSize, glm::vec2(1.0f / 720, 1.0f / 1280));
}

TEST_F(EffectTest, PerspectiveProjectionHasTheFixedFieldOfView) {
    vi::EventHolder effect;
    effect.makeCurrent();
    effect.initEffect(100, 100);
    effect.setPerspectiveProjection();
    const glm::mat4& projection = *vi::Drawable::mProjectionMatrix;
    EXPECT_FLOAT_EQ(projection[0][0], 1.0f / 0.55785173f);
    EXPECT_EQ(projection[1][1], 1.792591f);
    EXPECT_EQ(projection[2][3], -1.0f);
    EXPECT_EQ(projection[3][2], -2.0002f);
    EXPECT_EQ(projection[3][3], 0.0f);
}

TEST_F(EffectTest, InitCreatesTheTwoByTwoErrorTextureInTheEffectsList) {
    vi::EventHolder effect;
    effect.makeCurrent();
    effect.initEffect(64, 64);
    ASSERT_NE(effect.mErrorTexture, nullptr);
    EXPECT_EQ(effect.mErrorTexture->mWidth, 2u);
    EXPECT_TRUE(effect.mErrorTexture->mIsRepeat);
    EXPECT_EQ(effect.mTextureList.back(), effect.mErrorTexture);
    EXPECT_TRUE(effect.mIsReady);
}

TEST_F(EffectTest, LeftoverRenderersAndShadersAreReportedOnceEach) {
    qam::test::LogCapture log;
    vi::Drawable drawable;
    vi::ShaderProgram* program = nullptr;
    vi::Renderer* renderers[2] = {};
    {
        vi::EventHolder effect;
        effect.makeCurrent();
        program = vi::ShaderProgram::addProgram(new vi::ShaderProgram(
            "attribute vec2 a; void main() { gl_Position = vec4(a, 0.0, 1.0); }",
            "void main() { gl_FragColor = vec4(1.0); }", 0));
        renderers[0] = new vi::Renderer(*program, drawable);
        renderers[1] = new vi::Renderer(*program, drawable);
    }  // the effect dies with both renderers and the program still listed
    EXPECT_EQ(log.count("WARNING: Renderer leaked!!!!!!!"), 1);
    EXPECT_EQ(log.count("WARNING: Shader leaked!!!!!!!"), 1);

    std::vector<vi::Renderer*> renderersElsewhere;
    std::vector<vi::ShaderProgram*> shadersElsewhere;
    vi::Renderer::mAllRenderers = &renderersElsewhere;
    vi::ShaderProgram::mAllShaders = &shadersElsewhere;
    delete renderers[0];
    delete renderers[1];
    program->destroy();
}

}  // namespace
