#pragma once

#include <string>

#include "Common/Platform/Export.h"
#include "Common/Renderer/Base/Drawable.h"
#include "Common/Tools/File.h"

namespace vi {

// A mesh held in one flat little-endian buffer: vertex count N and index count M (32 bits
// each), N positions (x, y, z), N normals, N texture coordinates (u, v), a skipped block of
// 4 bytes per vertex, then M 16-bit indices at offset 8 + 36 N. The buffer is the file's.
class TALVEQAM_EXPORT ModelObject : public File {
  public:
    ModelObject();
    // Reads the asset `name` + ".bin".
    explicit ModelObject(const std::string& name);

    // Reads the asset `name` + ".bin"; a missing asset ends the process.
    void load(const std::string& name);
    // Appends `size` bytes: on an empty object, adopts a model already in memory.
    void setBuffer(const void* data, unsigned size);
    // Multiplies every position by `factor` in place; the rest is untouched.
    void scale(float factor);
    // Copies the model into `drawable`: vec3 positions, normals, texture coordinates and
    // indices, as triangles. A buffer too short for what this reads leaves those lists of
    // `drawable` empty.
    void fillDrawable(Drawable& drawable);

  private:
    // Vertex and index counts of a buffer that holds what scale() or, with `forDrawable`,
    // fillDrawable() reads, else logs why not (once per model).
    bool readCounts(bool forDrawable, unsigned& vertices, unsigned& indices);
};

}  // namespace vi
