#include "Common/Renderer/Base/ModelObject.h"

#include <algorithm>
#include <cstdint>
#include <tuple>

#include "tests/Common/Renderer/Base/RenderCoreFixture.h"

namespace {

using namespace qam::test;
using glm::vec2;
using glm::vec3;
using vi::Drawable;
using vi::ModelObject;
using Bytes = std::vector<unsigned char>;

struct Mesh {
    std::vector<vec3> positions, normals;
    std::vector<vec2> coords;
    std::vector<uint16_t> indices;
};

template <typename T>
void append(Bytes& bytes, const std::vector<T>& values) {
    const auto* begin = reinterpret_cast<const unsigned char*>(values.data());
    bytes.insert(bytes.end(), begin, begin + values.size() * sizeof(T));
}

Bytes header(uint32_t vertices, uint32_t indices, size_t size = 8) {
    Bytes bytes;
    append(bytes, std::vector<uint32_t>{vertices, indices});  // little-endian, as devices are
    bytes.resize(size);
    return bytes;
}

Bytes modelFile(const Mesh& mesh) {
    Bytes bytes = header(mesh.positions.size(), mesh.indices.size());
    append(bytes, mesh.positions);
    append(bytes, mesh.normals);
    append(bytes, mesh.coords);
    bytes.insert(bytes.end(), 4 * mesh.positions.size(), 0xAB);  // a block the loader skips
    append(bytes, mesh.indices);
    return bytes;
}

// Two triangles sharing an edge.
const Mesh kQuad = {{{-1, -1, 0}, {1, -1, 0}, {1, 1, 0.5f}, {-1, 1, 0.5f}},
                    {{0, 0, 1}, {0, 0.6f, 0.8f}, {0, 0, -1}, {1, 0, 0}},
                    {{0, 0}, {1, 0}, {1, 1}, {0, 1}},
                    {0, 1, 2, 2, 3, 0}};
const Mesh kDoubled = [] {
    Mesh mesh = kQuad;
    for (vec3& position : mesh.positions) {
        position *= 2.0f;
    }
    return mesh;
}();
// A drawable holding something else in every field the model writes.
Drawable usedDrawable() {
    Drawable drawable;
    drawable.mMode = GL_POINTS;
    drawable.mDimension = 2;
    drawable.mPositions3 = drawable.mNormals = std::vector<vec3>(9, vec3(7));
    drawable.mTextureCoords.assign(9, vec2(7));
    drawable.mIndices.assign(9, 7);
    drawable.mIsPositionsStatic = drawable.mIsNormalsStatic = true;
    drawable.mIsTextureCoordsStatic = drawable.mIsIndicesChanged = false;
    return drawable;
}

Bytes bytesOf(ModelObject& model) {
    const auto* begin = static_cast<const unsigned char*>(model.getBuffer());
    return Bytes(begin, begin + model.getLength());
}

void adopt(ModelObject& model, const Bytes& bytes) {
    model.setBuffer(bytes.data(), static_cast<unsigned>(bytes.size()));
}

TEST(ModelObjectTest,
     FillDrawableCopiesTheModelSkipsThePerVertexBlockAndScaleTouchesPositionsOnly) {
    ModelObject model;
    adopt(model, modelFile(kQuad));
    Drawable drawable = usedDrawable();
    model.fillDrawable(drawable);
    EXPECT_EQ(std::tie(drawable.mPositions3, drawable.mNormals, drawable.mTextureCoords,
                       drawable.mIndices),
              std::tie(kQuad.positions, kQuad.normals, kQuad.coords, kQuad.indices));
    EXPECT_EQ(std::tuple(drawable.mMode, drawable.mDimension, drawable.mIsPositionsStatic,
                         drawable.mIsNormalsStatic, drawable.mIsTextureCoordsStatic),
              std::tuple(GLenum(GL_TRIANGLES), 3u, 0, 0, 1));
    model.scale(2);  // positions only: the rest of the buffer is as it was
    EXPECT_EQ(bytesOf(model), modelFile(kDoubled));

    ModelObject appended;  // a second buffer is appended: the first header still holds
    adopt(appended, header(0, 0));
    adopt(appended, modelFile(kQuad));
    appended.fillDrawable(drawable);
    EXPECT_TRUE(drawable.mPositions3.empty() && drawable.mIndices.empty());
}

// Buffers that do not hold what fillDrawable reads: nothing is read past the end, the
// drawable is left as it was, and each model says so once.
TEST(ModelObjectTest, BuffersShorterThanWhatIsReadAreRefused) {
    const Bytes valid = modelFile(kQuad);
    // 0x071C71C72 vertices: their 36 N bytes wrap to 32 in 32 bits.
    for (Bytes bytes : {Bytes{}, Bytes{1, 0, 0, 0, 0, 0, 0}, Bytes(valid.begin(), valid.end() - 1),
                        header(1, 0), header(0x071C71C72u, 0, 40), header(0, 0xFFFFFFFFu, 64)}) {
        SCOPED_TRACE(bytes.size());
        LogCapture log;
        ModelObject model;
        bytes.shrink_to_fit();
        adopt(model, bytes);
        Drawable drawable = usedDrawable();
        model.fillDrawable(drawable);
        model.fillDrawable(drawable);
        const Drawable before = usedDrawable();
        EXPECT_EQ(std::tie(drawable.mPositions3, drawable.mNormals, drawable.mTextureCoords,
                           drawable.mIndices, drawable.mMode),
                  std::tie(before.mPositions3, before.mNormals, before.mTextureCoords,
                           before.mIndices, before.mMode));
        EXPECT_EQ(bytesOf(model), bytes);
        EXPECT_EQ(log.messages().size(), 1u);
    }

    // Without indices the skipped block is not read: a model that ends before it is whole.
    Mesh noIndices = kQuad;
    noIndices.indices.clear();
    Bytes bytes = modelFile(noIndices);
    bytes.resize(bytes.size() - 4 * noIndices.positions.size());
    ModelObject model;
    adopt(model, bytes);
    Drawable drawable = usedDrawable();
    model.fillDrawable(drawable);
    EXPECT_EQ(drawable.mTextureCoords, kQuad.coords);
    EXPECT_TRUE(drawable.mIndices.empty());

    // scale reads the positions only: cut after them a model is scaled, cut inside them it
    // is left as it was.
    const Bytes scaled = modelFile(kDoubled);
    const size_t positionsEnd = 8 + 12 * kQuad.positions.size();
    for (size_t length : {positionsEnd, positionsEnd - 1}) {
        LogCapture log;
        ModelObject cut;
        adopt(cut, Bytes(valid.begin(), valid.begin() + length));
        cut.scale(2);
        const Bytes& expected = length == positionsEnd ? scaled : valid;
        EXPECT_EQ(bytesOf(cut), Bytes(expected.begin(), expected.begin() + length)) << length;
        EXPECT_EQ(log.messages().size(), length == positionsEnd ? 0u : 1u);
    }
}

}  // namespace
