#include "Common/Renderer/Base/ShaderProgram.h"

#include <GLES2/gl2.h>

#include <vector>

#include "tests/support/GLCallCounter.h"
#include "tests/support/GLTest.h"

namespace {

using qam::test::GLCallCounter;
using vi::ShaderProgram;

const char* const kVertex =
    "attribute vec2 aPosition;\n"
    "void main() { gl_Position = vec4(aPosition, 0.0, 1.0); }\n";
const char* const kFragment =
    "precision mediump float;\n"
    "void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); }\n";

class ShaderProgramTest : public qam::test::GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        mSaved = ShaderProgram::mAllShaders;
        ShaderProgram::mAllShaders = &mShaders;
    }
    void TearDown() override {
        while (!mShaders.empty()) {
            mShaders.back()->destroy();
        }
        ShaderProgram::mAllShaders = mSaved;
    }
    std::vector<ShaderProgram*> mShaders;
    std::vector<ShaderProgram*>* mSaved = nullptr;
};

TEST_F(ShaderProgramTest, BuiltProgramDrawsAndIsListedByItsCreator) {
    ShaderProgram* program = new ShaderProgram(kVertex, kFragment, 0);
    ShaderProgram::addProgram(program);
    ASSERT_NE(program->mProgram, 0u);
    EXPECT_EQ(glIsProgram(program->mProgram), GL_TRUE);

    const float triangle[] = {-1, -1, 3, -1, -1, 3};
    glUseProgram(program->mProgram);
    const GLint position = glGetAttribLocation(program->mProgram, "aPosition");
    glEnableVertexAttribArray(position);
    glVertexAttribPointer(position, 2, GL_FLOAT, GL_FALSE, 0, triangle);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glDisableVertexAttribArray(position);
    EXPECT_EQ(pixel(32, 32), 0x00FF00FFu);
    EXPECT_EQ(mShaders, std::vector<ShaderProgram*>{program});
}

TEST_F(ShaderProgramTest, GeneratedIdsCountUpAndExplicitIdsLeaveTheCounterAlone) {
    const unsigned before = ShaderProgram::mUniqueId;
    ShaderProgram* first = ShaderProgram::addProgram(new ShaderProgram(kVertex, kFragment, 0));
    EXPECT_EQ(first->getUniqueId(), before + 1);
    ShaderProgram* explicitId =
        ShaderProgram::addProgram(new ShaderProgram(kVertex, kFragment, before + 2));
    EXPECT_EQ(explicitId->getUniqueId(), before + 2);
    EXPECT_EQ(ShaderProgram::mUniqueId, before + 1);
    // The next generated id collides with the explicit one.
    ShaderProgram* next = ShaderProgram::addProgram(new ShaderProgram(kVertex, kFragment, 0));
    EXPECT_EQ(next->getUniqueId(), before + 2);
    EXPECT_EQ(ShaderProgram::getProgram(before + 2), explicitId);  // first match wins
}

TEST_F(ShaderProgramTest, GetProgramAppendsANullSlotPerMiss) {
    ShaderProgram* program = ShaderProgram::addProgram(new ShaderProgram(kVertex, kFragment, 0));
    EXPECT_EQ(ShaderProgram::getProgram(program->getUniqueId()), program);
    ShaderProgram*& slot = ShaderProgram::getProgram(999999);
    EXPECT_EQ(slot, nullptr);
    EXPECT_EQ(mShaders.size(), 2u);
    slot = new ShaderProgram(kVertex, kFragment, 999999);  // the shared-program pattern
    EXPECT_EQ(ShaderProgram::getProgram(999999), slot);
    EXPECT_EQ(mShaders.size(), 2u);
}

TEST_F(ShaderProgramTest, DestroyCountsReferencesAndUnlistsEveryEntry) {
    ShaderProgram* program = new ShaderProgram(kVertex, kFragment, 0);
    ShaderProgram::addProgram(program);
    ShaderProgram::addProgram(program);  // listed twice
    ShaderProgram* other = ShaderProgram::addProgram(new ShaderProgram(kVertex, kFragment, 0));
    const GLuint name = program->mProgram;

    program->destroy();  // count 1 -> 0: gone, both entries removed
    EXPECT_EQ(mShaders, std::vector<ShaderProgram*>{other});
    EXPECT_EQ(glIsProgram(name), GL_FALSE);
}

TEST_F(ShaderProgramTest, DestroyWithTwoReferencesOnlyLowersTheCount) {
    ShaderProgram* program = ShaderProgram::addProgram(new ShaderProgram(kVertex, kFragment, 0));
    program->mReferenceCount = 2;  // a second owner shares it
    program->destroy();
    EXPECT_EQ(mShaders, std::vector<ShaderProgram*>{program});
    EXPECT_EQ(program->mReferenceCount, 1);
    EXPECT_EQ(glIsProgram(program->mProgram), GL_TRUE);
    program->destroy();
    EXPECT_TRUE(mShaders.empty());
}

TEST_F(ShaderProgramTest, InitOnALiveProgramDoesNoGLWorkBeyondTheCheck) {
    ShaderProgram* program = ShaderProgram::addProgram(new ShaderProgram(kVertex, kFragment, 0));
    const GLuint name = program->mProgram;
    GLCallCounter calls;
    program->init();
    EXPECT_EQ(calls.count("glIsProgram"), 1);
    EXPECT_EQ(calls.total(), 1);
    EXPECT_EQ(program->mProgram, name);
}

TEST_F(ShaderProgramTest, InitRebuildsAfterTheContextIsLost) {
    ShaderProgram* program = ShaderProgram::addProgram(new ShaderProgram(kVertex, kFragment, 0));
    loseContext();
    program->mProgram = 0;  // what the host does after a loss
    GLCallCounter calls;
    program->init();
    EXPECT_EQ(calls.count("glIsProgram"), 0);
    EXPECT_EQ(calls.count("glCreateProgram"), 1);
    EXPECT_EQ(glIsProgram(program->mProgram), GL_TRUE);
}

class ShaderProgramDeathTest : public ShaderProgramTest {
  protected:
    void SetUp() override {
        GTEST_FLAG_SET(death_test_style, "threadsafe");  // llvmpipe runs threads
        ShaderProgramTest::SetUp();
    }
};

TEST_F(ShaderProgramDeathTest, CompileFailureReportsTheInfoLogAndExits109) {
    EXPECT_EXIT(new ShaderProgram(kVertex, "void main() { nonsense; }", 0),
                ::testing::ExitedWithCode(109),
                "qam.vi E .* Exception: \"[^\"]*undeclared[^\"]*\"\n"
                "In file : \"Common/Renderer/Base/ShaderProgram\"\n"
                "In function : \"compileShader\"\nIn line : 109");
}

TEST_F(ShaderProgramDeathTest, LinkFailureReportsTheInfoLogAndExits84) {
    // Compiles, but the fragment stage reads a varying the vertex stage never writes.
    const char* fragment =
        "precision mediump float;\nvarying vec4 vMissing;\n"
        "void main() { gl_FragColor = vMissing; }\n";
    EXPECT_EXIT(new ShaderProgram(kVertex, fragment, 0), ::testing::ExitedWithCode(84),
                "qam.vi E .* Exception: \"[^\"]*\"\n"
                "In file : \"Common/Renderer/Base/ShaderProgram\"\n"
                "In function : \"init\"\nIn line : 84");
}

}  // namespace
