#include "Kinetra/Core/KNShaderManager.h"

#include <GLES2/gl2.h>

#include <vector>

#include "Common/Platform/Log.h"

namespace Kinetra {

namespace {

constexpr unsigned int kShaderObject = 0;
constexpr unsigned int kProgramObject = 1;

}  // namespace

KNShaderManager::KNShaderManager() : mProgram(0) {}

KNShaderManager::~KNShaderManager() {
    reset();
    qam::forgetLoggedOnce(this);
}

void KNShaderManager::createProgram(const char* vertexSource, const char* fragmentSource) {
    // GL would read a null source as a string.
    if (vertexSource == nullptr || fragmentSource == nullptr) {
        qam::logErrorOnce(this,
                          "KNShaderManager::createProgram: null shader source, no program built");
        return;
    }
    const GLuint vertexShader = glCreateShader(GL_VERTEX_SHADER);
    if (vertexShader == 0) {
        return;
    }
    const GLuint fragmentShader = glCreateShader(GL_FRAGMENT_SHADER);
    if (fragmentShader == 0) {
        glDeleteShader(vertexShader);
        return;
    }
    // A shader that fails deletes itself; its partner is left as it is.
    if (!compileShader(vertexShader, vertexSource) ||
        !compileShader(fragmentShader, fragmentSource)) {
        return;
    }
    mProgram = glCreateProgram();
    if (mProgram == 0) {
        return;
    }
    glAttachShader(mProgram, vertexShader);
    glAttachShader(mProgram, fragmentShader);
    glLinkProgram(mProgram);
    // Attached shaders live on until the program goes.
    glDeleteShader(vertexShader);
    glDeleteShader(fragmentShader);
    GLint linked = GL_FALSE;
    glGetProgramiv(mProgram, GL_LINK_STATUS, &linked);
    if (linked == GL_FALSE) {
        printGLErrorLog(mProgram, kProgramObject);
        glDeleteProgram(mProgram);  // the stale name stays in mProgram
    }
}

int KNShaderManager::compileShader(unsigned int shader, const char* source) {
    if (source == nullptr) {
        qam::logErrorOnce(this, "KNShaderManager::compileShader: null source for shader %u",
                          shader);
        return 0;
    }
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint compiled = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled == GL_FALSE) {
        printGLErrorLog(shader, kShaderObject);
        glDeleteShader(shader);
        return 0;
    }
    return 1;
}

void KNShaderManager::printGLErrorLog(unsigned int object, unsigned int kind) {
    if (kind != kShaderObject && kind != kProgramObject) {
        return;
    }
    GLint length = 0;
    if (kind == kShaderObject) {
        glGetShaderiv(object, GL_INFO_LOG_LENGTH, &length);
    } else {
        glGetProgramiv(object, GL_INFO_LOG_LENGTH, &length);
    }
    if (length < 2) {
        return;
    }
    std::vector<GLchar> text(static_cast<size_t>(length));
    if (kind == kShaderObject) {
        glGetShaderInfoLog(object, length, nullptr, text.data());
    } else {
        glGetProgramInfoLog(object, length, nullptr, text.data());
    }
}

// A null name reaches GL only with a program, which would read it as a string.
void KNShaderManager::addAttribute(int id, const char* name) {
    if (mProgram == 0) {
        return;
    }
    if (name == nullptr) {
        qam::logErrorOnce(this, "KNShaderManager::addAttribute: null name for id %d", id);
        return;
    }
    mAttributes.push_back({id, glGetAttribLocation(mProgram, name)});
}

void KNShaderManager::addUniform(int id, const char* name) {
    if (mProgram == 0) {
        return;
    }
    if (name == nullptr) {
        qam::logErrorOnce(this, "KNShaderManager::addUniform: null name for id %d", id);
        return;
    }
    mUniforms.push_back({id, glGetUniformLocation(mProgram, name)});
}

int KNShaderManager::getAttribute(int id) {
    return lookUp(mAttributes, id);
}

int KNShaderManager::getUniform(int id) {
    return lookUp(mUniforms, id);
}

int KNShaderManager::getAttributeLoc(const char* name) {
    if (mProgram == 0) {
        return 0;
    }
    if (name == nullptr) {
        qam::logErrorOnce(this, "KNShaderManager::getAttributeLoc: null name");
        return 0;
    }
    return glGetAttribLocation(mProgram, name);
}

int KNShaderManager::getUniformLoc(const char* name) {
    if (mProgram == 0) {
        return 0;
    }
    if (name == nullptr) {
        qam::logErrorOnce(this, "KNShaderManager::getUniformLoc: null name");
        return 0;
    }
    return glGetUniformLocation(mProgram, name);
}

void KNShaderManager::reset() {
    // The name stays until the next createProgram, so a second reset deletes it again.
    if (mProgram != 0) {
        glDeleteProgram(mProgram);
    }
    mAttributes.clear();
    mUniforms.clear();
}

void KNShaderManager::contextChanged() {
    mProgram = 0;
}

int KNShaderManager::lookUp(const std::vector<Location>& table, int id) {
    for (const Location& entry : table) {
        if (entry.id == id) {
            return entry.location;
        }
    }
    return 0;
}

unsigned int KNShaderManager::getProgram() const {
    return mProgram;
}

}  // namespace Kinetra
