#include "Common/Renderer/Base/ModelObject.h"

#include <cstdint>
#include <cstring>

#include "Common/Platform/Log.h"

namespace vi {
namespace {

constexpr uint64_t kHeaderBytes = 8;
constexpr uint64_t kPositionBytes = 12;
constexpr uint64_t kNormalBytes = 12;
constexpr uint64_t kCoordBytes = 8;
constexpr uint64_t kVertexBytes = 36;  // position, normal, coordinates, the skipped block
constexpr uint64_t kIndexBytes = 2;

static_assert(sizeof(glm::vec3) == kPositionBytes && sizeof(glm::vec2) == kCoordBytes,
              "glm vectors are copied straight from the buffer");

uint32_t readUint32(const unsigned char* bytes) {
    return uint32_t(bytes[0]) | uint32_t(bytes[1]) << 8 | uint32_t(bytes[2]) << 16 |
           uint32_t(bytes[3]) << 24;
}

}  // namespace

ModelObject::ModelObject() = default;

ModelObject::ModelObject(const std::string& name) {
    load(name);
}

void ModelObject::load(const std::string& name) {
    File::load(name + ".bin");
}

void ModelObject::setBuffer(const void* data, unsigned size) {
    write(data, size);
}

bool ModelObject::readCounts(bool forDrawable, unsigned& vertices, unsigned& indices) {
    const uint64_t length = getLength();
    if (length < kHeaderBytes) {
        qam::logErrorOnce(this, "ModelObject: %u bytes hold no model header, model ignored",
                          getLength());
        return false;
    }
    const auto* bytes = static_cast<const unsigned char*>(getBuffer());
    vertices = readUint32(bytes);
    indices = readUint32(bytes + 4);
    // Only what the caller reads must be there: the positions to scale; to fill a drawable
    // the normals and coordinates too, and the indices behind the skipped block when there
    // are any. 64-bit sizes: no count of 32 bits can overflow them.
    uint64_t needed = kHeaderBytes + kPositionBytes * vertices;
    if (forDrawable) {
        needed += (kNormalBytes + kCoordBytes) * vertices;
    }
    if (forDrawable && indices != 0) {
        needed = kHeaderBytes + kVertexBytes * vertices + kIndexBytes * indices;
    }
    if (length < needed) {
        qam::logErrorOnce(this,
                          "ModelObject: %u vertices and %u indices need %llu bytes, only %u"
                          " given, model ignored",
                          vertices, indices, static_cast<unsigned long long>(needed), getLength());
        return false;
    }
    return true;
}

void ModelObject::scale(float factor) {
    unsigned vertices = 0;
    unsigned indices = 0;
    if (!readCounts(false, vertices, indices)) {
        return;
    }
    unsigned char* positions = static_cast<unsigned char*>(getBuffer()) + kHeaderBytes;
    for (uint64_t offset = 0; offset < kPositionBytes * vertices; offset += sizeof(float)) {
        float value;
        memcpy(&value, positions + offset, sizeof value);
        value *= factor;
        memcpy(positions + offset, &value, sizeof value);
    }
}

void ModelObject::fillDrawable(Drawable& drawable) {
    unsigned vertices = 0;
    unsigned indices = 0;
    if (!readCounts(true, vertices, indices)) {
        return;
    }
    const unsigned char* bytes = static_cast<const unsigned char*>(getBuffer());
    const unsigned char* positions = bytes + kHeaderBytes;
    const unsigned char* normals = positions + kPositionBytes * vertices;
    const unsigned char* coords = normals + kNormalBytes * vertices;
    drawable.mPositions3.resize(vertices);
    drawable.mNormals.resize(vertices);
    drawable.mTextureCoords.resize(vertices);
    if (vertices != 0) {
        memcpy(drawable.mPositions3.data(), positions, kPositionBytes * vertices);
        memcpy(drawable.mNormals.data(), normals, kNormalBytes * vertices);
        memcpy(drawable.mTextureCoords.data(), coords, kCoordBytes * vertices);
    }
    drawable.mIsPositionsStatic = false;
    drawable.mIsNormalsStatic = false;
    drawable.mIsTextureCoordsStatic = true;
    drawable.mDimension = 3;
    drawable.mMode = GL_TRIANGLES;
    if (indices == 0) {
        drawable.mIndices.clear();
        return;
    }
    // The indices follow the skipped per-vertex block, not the texture coordinates.
    drawable.mIndices.resize(indices);
    memcpy(drawable.mIndices.data(), bytes + kHeaderBytes + kVertexBytes * vertices,
           kIndexBytes * indices);
}

}  // namespace vi
