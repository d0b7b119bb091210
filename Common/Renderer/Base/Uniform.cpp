#include "Common/Renderer/Base/Uniform.h"

namespace vi {

Uniform::Uniform(const std::string& name, const void* data, UniformType type, unsigned count)
    : mName(name), mLocation(-1), mData(data), mType(type), mCount(count) {}

void Uniform::upload() const {
    const auto* floats = static_cast<const GLfloat*>(mData);
    const auto* ints = static_cast<const GLint*>(mData);
    const GLsizei count = static_cast<GLsizei>(mCount);
    switch (mType) {
        case kMat2:
            glUniformMatrix2fv(mLocation, count, GL_FALSE, floats);
            break;
        case kMat3:
            glUniformMatrix3fv(mLocation, count, GL_FALSE, floats);
            break;
        case kMat4:
            glUniformMatrix4fv(mLocation, count, GL_FALSE, floats);
            break;
        case kInt:
            glUniform1iv(mLocation, count, ints);
            break;
        case kIVec2:
            glUniform2iv(mLocation, count, ints);
            break;
        case kIVec3:
            glUniform3iv(mLocation, count, ints);
            break;
        case kIVec4:
            glUniform4iv(mLocation, count, ints);
            break;
        case kFloat:
            glUniform1fv(mLocation, count, floats);
            break;
        case kVec2:
            glUniform2fv(mLocation, count, floats);
            break;
        case kVec3:
            glUniform3fv(mLocation, count, floats);
            break;
        case kVec4:
            glUniform4fv(mLocation, count, floats);
            break;
        default:
            break;
    }
}

}  // namespace vi
