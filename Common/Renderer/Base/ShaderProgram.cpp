#include "Common/Renderer/Base/ShaderProgram.h"

#include <algorithm>

#include "Common/Platform/Log.h"

namespace vi {
namespace {

constexpr const char* kSourcePath = "Common/Renderer/Base/ShaderProgram";
constexpr GLsizei kInfoLogSize = 4096;

[[noreturn]] void failWithInfoLog(const char* infoLog, const char* function, int line) {
    std::string message = "\"";
    message += infoLog;
    message += "\"\n";
    qam::fatalError(message, kSourcePath, function, line);
}

}  // namespace

// Programs made while no effect is current register here instead of nowhere.
static std::vector<ShaderProgram*> sUnownedShaders;

unsigned ShaderProgram::mUniqueId = 0;
std::vector<ShaderProgram*>* ShaderProgram::mAllShaders = &sUnownedShaders;

ShaderProgram::ShaderProgram(const std::string& vertexSource, const std::string& fragmentSource,
                             unsigned id)
    : mVertexSource(vertexSource),
      mFragmentSource(fragmentSource),
      mProgram(0),
      mReferenceCount(1),
      mId(id == 0 ? ++mUniqueId : id) {
    init();
}

ShaderProgram::~ShaderProgram() {
    if (mProgram != 0) {
        glUseProgram(0);
        glDeleteProgram(mProgram);
    }
}

void ShaderProgram::init() {
    if (mProgram != 0 && glIsProgram(mProgram)) {
        return;
    }
    const GLuint vertexShader = compileShader(true, mVertexSource);
    const GLuint fragmentShader = compileShader(false, mFragmentSource);
    mProgram = glCreateProgram();
    glAttachShader(mProgram, vertexShader);
    glAttachShader(mProgram, fragmentShader);
    glLinkProgram(mProgram);
    glDetachShader(mProgram, vertexShader);
    glDetachShader(mProgram, fragmentShader);
    glDeleteShader(vertexShader);
    glDeleteShader(fragmentShader);

    GLint linked = 0;
    glGetProgramiv(mProgram, GL_LINK_STATUS, &linked);
    if (linked == 1) {
        return;
    }
    char infoLog[kInfoLogSize] = {};
    glGetProgramInfoLog(mProgram, kInfoLogSize, nullptr, infoLog);
    glDeleteProgram(mProgram);  // the name field keeps its stale value
    failWithInfoLog(infoLog, "init", 84);
}

GLuint ShaderProgram::compileShader(bool isVertex, const std::string& source) const {
    const GLuint shader = glCreateShader(isVertex ? GL_VERTEX_SHADER : GL_FRAGMENT_SHADER);
    const char* text = source.c_str();
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    GLint compiled = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled != 0) {
        return shader;
    }
    char infoLog[kInfoLogSize] = {};
    glGetShaderInfoLog(shader, kInfoLogSize, nullptr, infoLog);
    glDeleteShader(shader);
    failWithInfoLog(infoLog, "compileShader", 109);
}

unsigned ShaderProgram::getUniqueId() {
    return mId;
}

ShaderProgram*& ShaderProgram::getProgram(unsigned id) {
    std::vector<ShaderProgram*>& all = *mAllShaders;
    for (ShaderProgram*& slot : all) {
        if (slot == nullptr) {
            // A slot its caller never filled: its id cannot be read.
            qam::logErrorOnce(&all, "ShaderProgram: empty slot in the program list, skipped");
        } else if (slot->mId == id) {
            return slot;
        }
    }
    all.push_back(nullptr);
    return all.back();
}

ShaderProgram*& ShaderProgram::addProgram(ShaderProgram* program) {
    mAllShaders->push_back(program);
    return mAllShaders->back();
}

void ShaderProgram::destroy() {
    if (mReferenceCount-- != 1) {
        return;
    }
    std::vector<ShaderProgram*>& all = *mAllShaders;
    all.erase(std::remove(all.begin(), all.end(), this), all.end());
    delete this;
}

}  // namespace vi
