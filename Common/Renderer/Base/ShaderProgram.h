#pragma once

#include <GLES2/gl2.h>

#include <string>
#include <vector>

#include "Common/Platform/Export.h"

namespace vi {

// One linked GLES2 program built from vertex and fragment source text. Programs live in the
// current effect's list (mAllShaders) so they can be found by id and rebuilt after the
// EGL context was lost. A compile or link failure ends the process (status 109 or 84).
class TALVEQAM_EXPORT ShaderProgram {
  public:
    // An `id` of 0 takes the next generated id.
    ShaderProgram(const std::string& vertexSource, const std::string& fragmentSource, unsigned id);
    ShaderProgram(const ShaderProgram&) = delete;
    ShaderProgram& operator=(const ShaderProgram&) = delete;

    // Builds the program unless the held name is still a live program.
    void init();
    GLuint compileShader(bool isVertex, const std::string& source) const;
    unsigned getUniqueId();

    // The slot holding the program with `id`; a new null slot is appended when none does.
    static ShaderProgram*& getProgram(unsigned id);
    static ShaderProgram*& addProgram(ShaderProgram* program);

    // Drops one reference; the last one unlists and deletes the program.
    void destroy();

    static unsigned mUniqueId;
    static std::vector<ShaderProgram*>* mAllShaders;

  private:
    // Freed through destroy(), except the light renderers' program, which is never listed.
    friend class LightRenderer;
    ~ShaderProgram();

    std::string mVertexSource;
    std::string mFragmentSource;

  public:
    // The GL program name; 0 = none yet. The host zeroes it after a lost context.
    GLuint mProgram;
    // Owners sharing the program; destroy() deletes it when the last one lets go.
    int mReferenceCount;

  private:
    unsigned mId;
};

}  // namespace vi
