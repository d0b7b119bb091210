#pragma once

#include <GLES2/gl2.h>

#include <string>

#include "Common/Platform/Export.h"

namespace vi {

// One shader uniform of a vi::Renderer: where its value lives and how to upload it. The
// renderer reads the data at every draw, so it must outlive the renderer.
class TALVEQAM_EXPORT Uniform {
  public:
    // Values beyond kVec4 are accepted but never uploaded.
    enum UniformType : unsigned {
        kMat2 = 0,
        kMat3 = 1,
        kMat4 = 2,
        kInt = 3,
        kIVec2 = 4,
        kIVec3 = 5,
        kIVec4 = 6,
        kFloat = 7,
        kVec2 = 8,
        kVec3 = 9,
        kVec4 = 10,
    };

    Uniform(const std::string& name, const void* data, UniformType type, unsigned count);

    // Uploads `mCount` elements from mData to mLocation of the program in use.
    void upload() const;

    std::string mName;
    // -1 until looked up.
    GLint mLocation;
    // Not owned.
    const void* mData;
    UniformType mType;
    // Array elements.
    unsigned mCount;
};

}  // namespace vi
