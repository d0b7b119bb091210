#include <EGL/egl.h>

#include "Common/Platform/Log.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace {

TEST(LogTest, ErrorsGoUnderTheLibraryTagAndFatalErrorsExitWithTheLine) {
    qam::test::LogCapture log;
    qam::logError("File empty: %s", "x.bin");
    const auto records = log.records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].tag, "qam.vi");
    EXPECT_EQ(records[0].priority, 'E');
    EXPECT_EQ(records[0].message, "File empty: x.bin");
    EXPECT_EXIT(qam::fatalError("\"broken\"\n", "Common/Some/Where", "doIt", 46),
                ::testing::ExitedWithCode(46),
                "qam.vi E .* Exception: \"broken\"\nIn file : \"Common/Some/Where\"\n"
                "In function : \"doIt\"\nIn line : 46");
}

using HeadlessContextTest = qam::test::GLTest;

TEST_F(HeadlessContextTest,
       ClearColourReadsBackResizeSetsTheViewportAndALostContextForgetsItsNames) {
    glClearColor(1.0f, 0.5f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    EXPECT_PIXEL_NEAR(pixel(3, 60), 0xFF8000FFu, 1);
    gl().resize(32, 16);  // the viewport follows
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(std::pair(viewport[2], viewport[3]), std::pair(32, 16));
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
