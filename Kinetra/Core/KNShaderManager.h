#pragma once

#include <vector>

#include "Common/Platform/Export.h"

namespace Kinetra {

// One GLSL ES program built from two source strings, with tables that map ids chosen by the
// caller to attribute and uniform locations. Each KNIRenderer owns one. Build failures are not
// reported: no program leaves the name 0, a failed link leaves the stale name of the program
// it deleted.
class TALVEQAM_EXPORT KNShaderManager {
  public:
    KNShaderManager();
    ~KNShaderManager();
    KNShaderManager(const KNShaderManager&) = delete;
    KNShaderManager& operator=(const KNShaderManager&) = delete;

    void createProgram(const char* vertexSource, const char* fragmentSource);
    // 1 when `source` compiled into `shader`; a shader that fails deletes itself.
    int compileShader(unsigned int shader, const char* source);
    // Fetches the info log of a shader (kind 0) or program (kind 1) and drops it: this build
    // prints nothing.
    void printGLErrorLog(unsigned int object, unsigned int kind);

    void addAttribute(int id, const char* name);
    void addUniform(int id, const char* name);
    // The location stored first under `id`, or 0.
    int getAttribute(int id);
    int getUniform(int id);
    // Asks GL on every call; 0 without a program.
    int getAttributeLoc(const char* name);
    int getUniformLoc(const char* name);

    unsigned int getProgram() const;

    // Deletes the program (the stale name stays until the next createProgram) and empties
    // both tables.
    void reset();
    // Forgets the program without deleting it: the context that owned it is gone.
    void contextChanged();

  private:
    struct Location {
        int id;
        int location;
    };

    static int lookUp(const std::vector<Location>& table, int id);

    unsigned int mProgram;
    std::vector<Location> mAttributes;
    std::vector<Location> mUniforms;
};

}  // namespace Kinetra
