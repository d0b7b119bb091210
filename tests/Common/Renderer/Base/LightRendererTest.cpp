#include "Common/Renderer/Base/LightRenderer.h"

#include <GLES2/gl2.h>

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <vector>

#include "tests/Common/Renderer/Base/RenderCoreFixture.h"

namespace {

using vi::Drawable;
using vi::LightRenderer;
using vi::ShaderProgram;
using vi::Uniform;

// Barycentric weights of `p` in the triangle (a, b, c).
glm::vec3 barycentric(glm::vec2 p, glm::vec2 a, glm::vec2 b, glm::vec2 c) {
    const float area = (b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y);
    const float wb = ((p.x - a.x) * (c.y - a.y) - (c.x - a.x) * (p.y - a.y)) / area;
    const float wc = ((b.x - a.x) * (p.y - a.y) - (p.x - a.x) * (b.y - a.y)) / area;
    return {1.0f - wb - wc, wb, wc};
}

class LightRendererTest : public qam::test::RenderCoreTest {};

TEST_F(LightRendererTest, LitQuadShowsPhongAtItsCentre) {
    const unsigned char texel[4] = {200, 100, 50, 255};
    vi::Texture texture(const_cast<unsigned char*>(texel), 1, 1, true, false, false, false, false,
                        4, false);
    const glm::vec3 normal(0.0f, 0.6f, 0.8f);
    Drawable drawable;
    drawable.mMode = GL_TRIANGLE_STRIP;
    drawable.mTexture = &texture;
    drawable.mPositions3 = {{-1, -1, 0}, {1, -1, 0}, {-1, 1, 0}, {1, 1, 0}};
    drawable.mNormals.assign(4, normal);
    drawable.mTextureCoords.assign(4, glm::vec2(0.5f));
    drawable.mOpacity = 0.8f;
    const glm::vec3 light(0.5f, 0.3f, 2.0f);
    const glm::vec3 eye(-0.7f, 2.6f, 1.2f);  // near the mirror direction: a visible highlight
    const float ambient = 0.2f, diffuse = 0.6f, specular = 0.3f, shininess = 8.0f;

    LightRenderer renderer(drawable);
    EXPECT_EQ(renderer.mAttributes.size(), 3u);
    renderer.addUniform("uLightPosition", &light, Uniform::kVec3, 1);
    renderer.addUniform("uEyePosition", &eye, Uniform::kVec3, 1);
    renderer.addUniform("uAmbient", &ambient, Uniform::kFloat, 1);
    renderer.addUniform("uDiffuse", &diffuse, Uniform::kFloat, 1);
    renderer.addUniform("uSpecular", &specular, Uniform::kFloat, 1);
    renderer.addUniform("uShininess", &shininess, Uniform::kFloat, 1);
    EXPECT_EQ(renderer.mUniforms.size(), 10u);  // 4 built-ins the shader uses, 6 lights
    renderer.draw();

    // Pixel (32, 32) lies in the strip's second triangle (2, 1, 3); the directions are
    // normalised per vertex and interpolated without renormalising, as the shader does.
    const glm::vec2 centre(32.5f / 32.0f - 1.0f);
    const int corners[3] = {2, 1, 3};
    const glm::vec3 weights = barycentric(centre, drawable.mPositions3[2], drawable.mPositions3[1],
                                          drawable.mPositions3[3]);
    glm::vec3 toLight(0.0f), toEye(0.0f);
    for (int i = 0; i < 3; ++i) {
        const glm::vec3 corner = drawable.mPositions3[corners[i]];
        toLight += weights[i] * glm::normalize(light - corner);
        toEye += weights[i] * glm::normalize(eye - corner);
    }
    const float lit = ambient + diffuse * std::max(0.0f, glm::dot(toLight, normal));
    const glm::vec3 reflected = glm::normalize(-glm::reflect(toLight, normal));
    const float shine = specular * std::pow(std::max(0.0f, glm::dot(reflected, toEye)), shininess);
    uint32_t expected = 0;
    for (int i = 0; i < 4; ++i) {
        const float value = i < 3 ? texel[i] / 255.0f * lit + shine : drawable.mOpacity;
        expected = expected << 8 | uint32_t(std::lround(std::clamp(value, 0.0f, 1.0f) * 255.0f));
    }
    // mediump keeps about 10 bits: two steps of 8-bit output cover it with room.
    EXPECT_PIXEL_NEAR(pixel(32, 32), expected, 2);
    EXPECT_NE(pixel(32, 32), pixel(2, 2));  // and the light does vary over the quad
}

TEST_F(LightRendererTest, ProgramIsSharedAcrossEffectsAndGoesWithItsLastUser) {
    Drawable drawable;
    drawable.mDimension = 2;
    auto* here = new LightRenderer(drawable);
    std::vector<ShaderProgram*> otherShaders;
    ShaderProgram::mAllShaders = &otherShaders;
    auto* there = new LightRenderer(drawable);
    ShaderProgram::mAllShaders = &mShaders;
    EXPECT_EQ(there->mProgram, here->mProgram);
    EXPECT_TRUE(mShaders.empty());
    EXPECT_TRUE(otherShaders.empty());

    const GLuint name = here->mProgram->mProgram;
    delete here;
    EXPECT_EQ(glIsProgram(name), GL_TRUE);
    delete there;
    EXPECT_EQ(glIsProgram(name), GL_FALSE);
}

}  // namespace
