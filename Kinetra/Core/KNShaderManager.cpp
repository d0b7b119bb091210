#include "Kinetra/Core/KNShaderManager.h"

#include <GLES2/gl2.h>

#include <mutex>
#include <unordered_set>
#include <vector>

#include "Common/Platform/Log.h"

namespace Kinetra {

namespace {

constexpr unsigned int kShaderObject = 0;
constexpr unsigned int kProgramObject = 1;

// Managers whose program name is stale: deleted already, and perhaps handed out again by GL,
// so never to be deleted twice. Kept beside the managers, whose layout effect libraries fix.
class StalePrograms {
  public:
    void mark(const KNShaderManager* manager, bool stale) {
        const std::lock_guard<std::mutex> lock(mMutex);
        if (stale) {
            mManagers.insert(manager);
        } else {
            mManagers.erase(manager);
        }
    }
    bool contains(const KNShaderManager* manager) {
        const std::lock_guard<std::mutex> lock(mMutex);
        return mManagers.count(manager) != 0;
    }

  private:
    std::mutex mMutex;
    std::unordered_set<const KNShaderManager*> mManagers;
};

// Never destroyed: layers held in statics may die after it.
StalePrograms& stalePrograms() {
    static StalePrograms* const managers = new StalePrograms;
    return *managers;
}

}  // namespace

KNShaderManager::KNShaderManager() : mProgram(0) {}

KNShaderManager::~KNShaderManager() {
    reset();
    stalePrograms().mark(this, false);
}

void KNShaderManager::createProgram(const char* vertexSource, const char* fragmentSource) {
    if (vertexSource == nullptr || fragmentSource == nullptr) {
        qam::logError("KNShaderManager::createProgram: null shader source, no program built");
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
    stalePrograms().mark(this, false);
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
        stalePrograms().mark(this, true);
    }
}

int KNShaderManager::compileShader(unsigned int shader, const char* source) {
    if (source == nullptr) {
        qam::logError("KNShaderManager::compileShader: null source for shader %u", shader);
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
        qam::logError("KNShaderManager::printGLErrorLog: unknown object kind %u", kind);
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

void KNShaderManager::addAttribute(int id, const char* name) {
    if (name == nullptr) {
        qam::logError("KNShaderManager::addAttribute: null name for id %d", id);
        return;
    }
    if (mProgram != 0) {
        mAttributes.push_back({id, glGetAttribLocation(mProgram, name)});
    }
}

void KNShaderManager::addUniform(int id, const char* name) {
    if (name == nullptr) {
        qam::logError("KNShaderManager::addUniform: null name for id %d", id);
        return;
    }
    if (mProgram != 0) {
        mUniforms.push_back({id, glGetUniformLocation(mProgram, name)});
    }
}

int KNShaderManager::getAttribute(int id) {
    return lookUp(mAttributes, id, "attribute");
}

int KNShaderManager::getUniform(int id) {
    return lookUp(mUniforms, id, "uniform");
}

int KNShaderManager::getAttributeLoc(const char* name) {
    if (name == nullptr) {
        qam::logError("KNShaderManager::getAttributeLoc: null name");
        return 0;
    }
    return mProgram == 0 ? 0 : glGetAttribLocation(mProgram, name);
}

int KNShaderManager::getUniformLoc(const char* name) {
    if (name == nullptr) {
        qam::logError("KNShaderManager::getUniformLoc: null name");
        return 0;
    }
    return mProgram == 0 ? 0 : glGetUniformLocation(mProgram, name);
}

void KNShaderManager::reset() {
    // The stale name is kept but never deleted twice: GL may have handed it out again.
    if (mProgram != 0 && !stalePrograms().contains(this)) {
        glDeleteProgram(mProgram);
        stalePrograms().mark(this, true);
    }
    mAttributes.clear();
    mUniforms.clear();
}

void KNShaderManager::contextChanged() {
    mProgram = 0;
    stalePrograms().mark(this, false);
}

int KNShaderManager::lookUp(const std::vector<Location>& table, int id, const char* what) {
    for (const Location& entry : table) {
        if (entry.id == id) {
            return entry.location;
        }
    }
    qam::logError("KNShaderManager: no %s with id %d", what, id);
    return 0;
}

unsigned int KNShaderManager::getProgram() const {
    return mProgram;
}

}  // namespace Kinetra
