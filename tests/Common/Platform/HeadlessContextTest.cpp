#include <EGL/egl.h>
#include <GLES2/gl2.h>

#include "tests/support/GLTest.h"

namespace {

using qam::test::GLTest;

class HeadlessContextTest : public GLTest {};

TEST_F(HeadlessContextTest, ClearColourReadsBack) {
    glClearColor(1.0f, 0.5f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    EXPECT_PIXEL_NEAR(pixel(3, 60), 0xFF8000FFu, 1);
}

TEST_F(HeadlessContextTest, LosingTheContextForgetsItsNames) {
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    ASSERT_TRUE(glIsTexture(texture));
    const EGLContext before = eglGetCurrentContext();
    loseContext();
    EXPECT_NE(eglGetCurrentContext(), before);
    EXPECT_FALSE(glIsTexture(texture));
}

}  // namespace
