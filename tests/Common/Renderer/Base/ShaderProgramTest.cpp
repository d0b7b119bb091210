#include "Common/Renderer/Base/ShaderProgram.h"

#include "tests/Common/Renderer/Base/RenderCoreFixture.h"

namespace {

using namespace qam::test;
using vi::ShaderProgram;

class ShaderProgramTest : public RenderCoreTest {
  protected:
    ShaderProgram* add(unsigned id = 0) {
        return ShaderProgram::addProgram(new ShaderProgram(kFlatVertex, kFlatFragment, id));
    }
};

TEST_F(ShaderProgramTest, DestroyCountsReferencesAndUnlistsEveryEntry) {
    ShaderProgram* program = add();
    ShaderProgram::addProgram(program);  // listed twice
    ShaderProgram* other = add();
    const GLuint name = program->mProgram;
    program->mReferenceCount = 2;  // a second owner shares it
    program->destroy();
    EXPECT_EQ(mShaders, (std::vector<ShaderProgram*>{program, program, other}));
    EXPECT_EQ(glIsProgram(name), GL_TRUE);
    program->destroy();
    EXPECT_EQ(mShaders, std::vector<ShaderProgram*>{other});
    EXPECT_EQ(glIsProgram(name), GL_FALSE);
}

TEST_F(ShaderProgramTest, InitOnlyChecksALiveProgramAndRebuildsALostOne) {
    ShaderProgram* program = add();
    const GLuint name = program->mProgram;
    GLCallCounter calls;
    program->init();
    EXPECT_EQ(calls.count("glIsProgram"), 1);
    EXPECT_EQ(calls.total(), 1);
    EXPECT_EQ(program->mProgram, name);

    loseContext();
    program->mProgram = 0;  // what the host does after a loss
    program->init();
    EXPECT_EQ(calls.count("glIsProgram"), 1);
    EXPECT_EQ(calls.count("glCreateProgram"), 1);
    EXPECT_EQ(glIsProgram(program->mProgram), GL_TRUE);
}

}  // namespace
