#include "Kinetra/Core/KNShaderManager.h"

#include <GLES2/gl2.h>

#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace {

using Kinetra::KNShaderManager;
using qam::test::GLTest;
using qam::test::LogCapture;

const char* const kVertex =
    "attribute vec2 aPosition;\n"
    "attribute float aUnused;\n"
    "void main() { gl_Position = vec4(aPosition, 0.0, 1.0); }\n";
const char* const kFragment =
    "precision mediump float;\n"
    "uniform vec4 uColor;\n"
    "uniform float uGain;\n"
    "void main() { gl_FragColor = uColor * uGain; }\n";
const char* const kBroken = "void main() { this is not glsl }\n";
// Links with neither of the sources above: the varying is read but never written.
const char* const kNeedsVarying =
    "precision mediump float;\n"
    "varying vec4 vTint;\n"
    "void main() { gl_FragColor = vTint; }\n";

class KNShaderManagerTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        glDisable(GL_BLEND);  // a renderer test before may have left it on
    }
    // Fills the viewport with the manager's program and the uniform values given.
    void drawQuad(KNShaderManager& shader, float r, float g, float b, float gain) {
        static const float corners[] = {-1, -1, 1, -1, -1, 1, 1, 1};
        glUseProgram(shader.getProgram());
        const GLuint position = static_cast<GLuint>(shader.getAttributeLoc("aPosition"));
        glVertexAttribPointer(position, 2, GL_FLOAT, GL_FALSE, 0, corners);
        glEnableVertexAttribArray(position);
        glUniform4f(shader.getUniformLoc("uColor"), r, g, b, 1);
        glUniform1f(shader.getUniformLoc("uGain"), gain);
        glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
        glDisableVertexAttribArray(position);
        glUseProgram(0);
    }
};

TEST_F(KNShaderManagerTest, BuiltProgramDrawsAndMapsIdsToLocations) {
    KNShaderManager shader;
    shader.createProgram(kVertex, kFragment);
    ASSERT_NE(shader.getProgram(), 0u);
    EXPECT_TRUE(glIsProgram(shader.getProgram()));

    drawQuad(shader, 1.0f, 0.5f, 0.0f, 1.0f);
    EXPECT_PIXEL_NEAR(pixel(10, 50), 0xFF8000FFu, 1);

    shader.addAttribute(7, "aPosition");
    shader.addAttribute(7, "aUnused");  // a second entry under one id is never reached
    shader.addAttribute(8, "aUnused");
    shader.addUniform(1, "uColor");
    shader.addUniform(2, "uGain");
    shader.addUniform(3, "uMissing");
    const GLuint program = shader.getProgram();
    EXPECT_EQ(shader.getAttribute(7), glGetAttribLocation(program, "aPosition"));
    EXPECT_EQ(shader.getAttribute(8), glGetAttribLocation(program, "aUnused"));
    EXPECT_NE(shader.getAttribute(7), shader.getAttribute(8));
    EXPECT_EQ(shader.getUniform(1), glGetUniformLocation(program, "uColor"));
    EXPECT_EQ(shader.getUniform(2), glGetUniformLocation(program, "uGain"));
    EXPECT_EQ(shader.getUniform(3), -1);

    // The locations found by id drive the program as well as those looked up by name.
    glUseProgram(program);
    glUniform4f(shader.getUniform(1), 0.0f, 1.0f, 1.0f, 1.0f);
    glUniform1f(shader.getUniform(2), 0.5f);
    static const float corners[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    const GLuint position = static_cast<GLuint>(shader.getAttribute(7));
    glVertexAttribPointer(position, 2, GL_FLOAT, GL_FALSE, 0, corners);
    glEnableVertexAttribArray(position);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisableVertexAttribArray(position);
    glUseProgram(0);
    EXPECT_PIXEL_NEAR(pixel(40, 5), 0x00808080u, 1);  // the gain scales alpha too
}

TEST_F(KNShaderManagerTest, UnknownIdsAndNamesGiveZeroWithOneLogLineEach) {
    KNShaderManager shader;
    LogCapture log;
    // Without a program nothing is stored and nothing is asked of GL.
    shader.addAttribute(1, "aPosition");
    shader.addUniform(1, "uColor");
    EXPECT_EQ(shader.getAttributeLoc("aPosition"), 0);
    EXPECT_EQ(shader.getUniformLoc("uColor"), 0);
    EXPECT_TRUE(log.messages().empty());

    EXPECT_EQ(shader.getAttribute(1), 0);
    EXPECT_EQ(shader.getUniform(42), 0);
    EXPECT_EQ(log.count("KNShaderManager: no attribute with id 1"), 1);
    EXPECT_EQ(log.count("KNShaderManager: no uniform with id 42"), 1);
    EXPECT_EQ(log.messages().size(), 2u);
}

TEST_F(KNShaderManagerTest, FailedCompileLeavesNoProgramAndTheOtherShaderAllocated) {
    // Shader names are handed out in order: the probe tells which two the manager takes.
    const GLuint probe = glCreateShader(GL_VERTEX_SHADER);
    KNShaderManager shader;
    LogCapture log;
    shader.createProgram(kBroken, kFragment);
    EXPECT_EQ(shader.getProgram(), 0u);
    EXPECT_FALSE(glIsShader(probe + 1));  // the vertex shader deleted itself
    EXPECT_TRUE(glIsShader(probe + 2));   // the fragment shader was never compiled nor freed
    GLint compiled = GL_TRUE;
    glGetShaderiv(probe + 2, GL_COMPILE_STATUS, &compiled);
    EXPECT_EQ(compiled, GL_FALSE);
    // The info log is fetched and dropped: a failed build writes nothing.
    EXPECT_TRUE(log.messages().empty());
    glDeleteShader(probe + 2);
    glDeleteShader(probe);

    shader.createProgram(kVertex, kBroken);
    EXPECT_EQ(shader.getProgram(), 0u);
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(KNShaderManagerTest, FailedLinkLeavesTheStaleNameOfTheDeletedProgram) {
    KNShaderManager shader;
    LogCapture log;
    shader.createProgram(kVertex, kNeedsVarying);
    const GLuint stale = shader.getProgram();
    ASSERT_NE(stale, 0u);
    EXPECT_FALSE(glIsProgram(stale));
    EXPECT_TRUE(log.messages().empty());

    // The stale name is passed on as if it were a program: GL rejects it and draws nothing.
    glUseProgram(stale);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    shader.addAttribute(1, "aPosition");
    EXPECT_EQ(shader.getAttribute(1), -1);
    while (glGetError() != GL_NO_ERROR) {
    }

    // The next build replaces the stale name.
    shader.createProgram(kVertex, kFragment);
    EXPECT_NE(shader.getProgram(), stale);
    EXPECT_TRUE(glIsProgram(shader.getProgram()));
}

TEST_F(KNShaderManagerTest, ResetDeletesTheProgramOnceAndEmptiesTheTables) {
    KNShaderManager shader;
    shader.createProgram(kVertex, kFragment);
    const GLuint program = shader.getProgram();
    shader.addAttribute(1, "aPosition");
    shader.addUniform(1, "uColor");
    shader.reset();
    EXPECT_EQ(shader.getProgram(), program);  // stale until the next createProgram
    EXPECT_FALSE(glIsProgram(program));
    {
        LogCapture log;
        EXPECT_EQ(shader.getAttribute(1), 0);
        EXPECT_EQ(shader.getUniform(1), 0);
        EXPECT_EQ(log.messages().size(), 2u);
    }

    // A program built later by someone else survives another reset of the stale name.
    KNShaderManager other;
    other.createProgram(kVertex, kFragment);
    shader.reset();
    EXPECT_TRUE(glIsProgram(other.getProgram()));
}

TEST_F(KNShaderManagerTest, ContextChangeForgetsTheProgramAndAllowsARebuild) {
    KNShaderManager shader;
    shader.createProgram(kVertex, kFragment);
    const GLuint first = shader.getProgram();
    shader.contextChanged();
    EXPECT_EQ(shader.getProgram(), 0u);
    EXPECT_TRUE(glIsProgram(first));  // forgotten, not deleted
    glDeleteProgram(first);

    shader.createProgram(kVertex, kFragment);
    loseContext();
    shader.contextChanged();
    shader.createProgram(kVertex, kFragment);
    ASSERT_TRUE(glIsProgram(shader.getProgram()));
    drawQuad(shader, 0.0f, 0.0f, 1.0f, 1.0f);
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0x0000FFFFu, 1);
}

TEST_F(KNShaderManagerTest, NullTextIsDroppedWithOneLogLine) {
    KNShaderManager shader;
    LogCapture log;
    shader.createProgram(nullptr, kFragment);
    EXPECT_EQ(shader.getProgram(), 0u);
    EXPECT_EQ(log.count("KNShaderManager::createProgram: null shader source, no program built"), 1);

    shader.createProgram(kVertex, kFragment);
    const GLuint shaderName = glCreateShader(GL_VERTEX_SHADER);
    EXPECT_EQ(shader.compileShader(shaderName, nullptr), 0);
    EXPECT_TRUE(glIsShader(shaderName));
    glDeleteShader(shaderName);
    shader.addAttribute(1, nullptr);
    shader.addUniform(1, nullptr);
    EXPECT_EQ(shader.getAttributeLoc(nullptr), 0);
    EXPECT_EQ(shader.getUniformLoc(nullptr), 0);
    shader.printGLErrorLog(shader.getProgram(), 2);
    EXPECT_EQ(log.messages().size(), 7u);
    EXPECT_EQ(log.count("KNShaderManager::printGLErrorLog: unknown object kind 2"), 1);
}

}  // namespace
