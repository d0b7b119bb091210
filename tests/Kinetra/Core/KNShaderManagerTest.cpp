#include "Kinetra/Core/KNShaderManager.h"

#include "tests/Kinetra/Core/CoreTestSupport.h"

namespace {

using Kinetra::KNShaderManager;
using KNShaderManagerTest = CoreTest;  // paint() draws with programs this manager builds

const char* const kBroken = "void main() { this is not glsl }\n";
// Links with no vertex shader here: the varying is read but never written.
const char* const kNeedsVarying =
    "precision mediump float;\nvarying vec4 vTint;\nvoid main() { gl_FragColor = vTint; }\n";

TEST_F(KNShaderManagerTest, IdsMapToTheLocationsOfTheirFirstEntryAndNullTextIsDropped) {
    KNShaderManager shader;
    LogCapture log;
    shader.addUniform(1, "uColor");  // without a program nothing is stored, whatever the name
    shader.addAttribute(1, nullptr);
    EXPECT_EQ(std::pair(shader.getUniformLoc("uColor"), shader.getUniformLoc(nullptr)),
              std::pair(0, 0));
    EXPECT_EQ(shader.getAttributeLoc("aPosition"), 0);
    shader.createProgram(kQuadVertex, kSolid);
    const GLuint program = shader.getProgram();
    EXPECT_EQ(shader.getUniform(1), 0);  // unknown ids give 0
    shader.printGLErrorLog(program, 2);  // an unknown kind of object: nothing
    EXPECT_TRUE(log.messages().empty());
    shader.addAttribute(7, "aPosition");
    shader.addAttribute(7, "uDepth");  // a second entry under one id is never reached
    shader.addUniform(1, "uColor");
    shader.addUniform(2, "uDepth");
    shader.addUniform(3, "uMissing");
    EXPECT_EQ(shader.getAttribute(7), glGetAttribLocation(program, "aPosition"));
    EXPECT_EQ(shader.getUniform(1), glGetUniformLocation(program, "uColor"));
    EXPECT_EQ(shader.getUniform(2), glGetUniformLocation(program, "uDepth"));
    EXPECT_EQ(shader.getUniform(3), -1);
    for (int round = 0; round < 2; ++round) {  // null text GL would read: dropped, logged once
        shader.addAttribute(1, nullptr);
        shader.addUniform(1, nullptr);
        EXPECT_EQ(std::pair(shader.getAttributeLoc(nullptr), shader.getUniformLoc(nullptr)),
                  std::pair(0, 0));
    }
    KNShaderManager empty;
    empty.createProgram(nullptr, kSolid);
    EXPECT_EQ(empty.getProgram(), 0u);
    const GLuint shaderName = glCreateShader(GL_VERTEX_SHADER);
    EXPECT_EQ(shader.compileShader(shaderName, nullptr), 0);
    EXPECT_TRUE(glIsShader(shaderName));
    glDeleteShader(shaderName);
    EXPECT_EQ(log.messages().size(), 6u);

    shader.reset();                           // deletes the program and empties the tables
    EXPECT_EQ(shader.getProgram(), program);  // stale until the next createProgram
    EXPECT_FALSE(glIsProgram(program));
    EXPECT_EQ(shader.getUniform(1), 0);
    while (glGetError() != GL_NO_ERROR) {
    }
    shader.reset();  // the stale name is deleted again: GL knows no such program
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
}

TEST_F(KNShaderManagerTest, FailedBuildsLeaveNoProgramOrTheStaleNameOfADeletedOne) {
    // Shader names are handed out in order: the probe tells which two the manager takes.
    const GLuint probe = glCreateShader(GL_VERTEX_SHADER);
    KNShaderManager shader;
    LogCapture log;
    shader.createProgram(kBroken, kSolid);
    EXPECT_EQ(shader.getProgram(), 0u);
    EXPECT_FALSE(glIsShader(probe + 1));  // the vertex shader deleted itself
    GLint compiled = GL_TRUE;             // the fragment shader was never compiled nor freed
    glGetShaderiv(probe + 2, GL_COMPILE_STATUS, &compiled);
    EXPECT_EQ(std::pair(glIsShader(probe + 2), compiled),
              std::pair(GLboolean{GL_TRUE}, GLint{GL_FALSE}));
    glDeleteShader(probe + 2);
    glDeleteShader(probe);
    shader.createProgram(kQuadVertex, kBroken);
    EXPECT_EQ(shader.getProgram(), 0u);

    shader.createProgram(kQuadVertex, kNeedsVarying);
    const GLuint stale = shader.getProgram();
    EXPECT_NE(stale, 0u);
    EXPECT_FALSE(glIsProgram(stale));
    EXPECT_TRUE(log.messages().empty());  // the info logs are fetched and dropped
    shader.addAttribute(1, "aPosition");  // GL rejects the stale name
    EXPECT_EQ(shader.getAttribute(1), -1);
    while (glGetError() != GL_NO_ERROR) {
    }
}

}  // namespace
