#include "Common/Renderer/Base/TextureCube.h"

#include <GLES2/gl2.h>

#include <array>
#include <cstdlib>
#include <vector>

#include "Common/Renderer/Base/ShaderProgram.h"
#include "tests/support/GLCallCounter.h"
#include "tests/support/GLTest.h"

namespace {

using vi::TextureCube;

const char* const kVertex =
    "attribute vec2 aPosition;\n"
    "void main() { gl_Position = vec4(aPosition, 0.0, 1.0); }\n";
// Looks the cube up in one direction for the whole viewport.
const char* const kFragment =
    "precision mediump float;\n"
    "uniform samplerCube uCube;\n"
    "uniform vec3 uDirection;\n"
    "void main() { gl_FragColor = textureCube(uCube, uDirection); }\n";

class TextureCubeTest : public qam::test::GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        vi::ShaderProgram::mAllShaders = &mShaders;
        vi::Texture::mAllTextures = &mTextures;
        mProgram = vi::ShaderProgram::addProgram(new vi::ShaderProgram(kVertex, kFragment, 0));
    }
    void TearDown() override { mProgram->destroy(); }

    uint32_t lookUp(TextureCube& cube, float x, float y, float z) {
        static const float kQuad[] = {-1, -1, 1, -1, -1, 1, 1, 1};
        const GLuint program = mProgram->mProgram;
        glUseProgram(program);
        cube.bind(glGetUniformLocation(program, "uCube"), 2);
        glUniform3f(glGetUniformLocation(program, "uDirection"), x, y, z);
        const GLint position = glGetAttribLocation(program, "aPosition");
        glEnableVertexAttribArray(position);
        glVertexAttribPointer(position, 2, GL_FLOAT, GL_FALSE, 0, kQuad);
        glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
        glDisableVertexAttribArray(position);
        return pixel(32, 32);
    }

    std::vector<vi::ShaderProgram*> mShaders;
    std::vector<vi::Texture*> mTextures;
    vi::ShaderProgram* mProgram = nullptr;
};

TEST_F(TextureCubeTest, SixFacesUploadInOrderAndSampleBack) {
    const std::array<uint32_t, 6> colours = {0xFF0000FF, 0x00FF00FF, 0x0000FFFF,
                                             0xFFFF00FF, 0x00FFFFFF, 0xFF00FFFF};
    std::array<void*, 6> faces;
    for (int i = 0; i < 6; ++i) {
        auto* texels = static_cast<unsigned char*>(malloc(4 * 4 * 4));
        for (int t = 0; t < 16; ++t) {
            for (int c = 0; c < 4; ++c) {
                texels[t * 4 + c] = (colours[i] >> (24 - 8 * c)) & 0xFF;
            }
        }
        faces[i] = texels;
    }
    auto* cube = new TextureCube(faces, {4, 4, 4, 4, 4, 4}, {4, 4, 4, 4, 4, 4}, true, false, false,
                                 false, false);
    cube->setDeletable(true);  // frees the six faces: LeakSanitizer checks it
    EXPECT_EQ(cube->mTarget, GLenum(GL_TEXTURE_CUBE_MAP));
    EXPECT_EQ(mTextures, std::vector<vi::Texture*>{cube});

    qam::test::GLCallCounter calls;
    cube->allocate();
    EXPECT_EQ(calls.count("glTexImage2D"), 6);
    EXPECT_TRUE(cube->mIsUploaded);

    EXPECT_EQ(lookUp(*cube, 1, 0, 0), colours[0]);
    EXPECT_EQ(lookUp(*cube, -1, 0, 0), colours[1]);
    EXPECT_EQ(lookUp(*cube, 0, 1, 0), colours[2]);
    EXPECT_EQ(lookUp(*cube, 0, -1, 0), colours[3]);
    EXPECT_EQ(lookUp(*cube, 0, 0, 1), colours[4]);
    EXPECT_EQ(lookUp(*cube, 0, 0, -1), colours[5]);

    // Uploaded once: a second update() refreshes all six faces in place.
    cube->update();
    EXPECT_EQ(calls.count("glTexSubImage2D"), 6);
    delete cube;
    EXPECT_TRUE(mTextures.empty());
}

}  // namespace
