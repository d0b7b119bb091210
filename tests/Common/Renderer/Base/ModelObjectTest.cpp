#include "Common/Renderer/Base/ModelObject.h"

#include <GLES2/gl2.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <string>
#include <vector>

#include "Common/Platform/AssetDirectory.h"
#include "Common/Renderer/Base/Renderer.h"
#include "tests/Common/Renderer/Base/RenderCoreFixture.h"
#include "tests/support/GLCallCounter.h"
#include "tests/support/LogCapture.h"

namespace {

using glm::vec2;
using glm::vec3;
using qam::test::GLCallCounter;
using vi::Drawable;
using vi::File;
using vi::ModelObject;
using vi::Renderer;

struct Mesh {
    std::vector<vec3> positions;
    std::vector<vec3> normals;
    std::vector<vec2> coords;
    std::vector<uint16_t> indices;
};

void append(std::vector<unsigned char>& bytes, const void* data, size_t size) {
    const auto* begin = static_cast<const unsigned char*>(data);
    bytes.insert(bytes.end(), begin, begin + size);
}

void appendUint32(std::vector<unsigned char>& bytes, uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<unsigned char>(value >> shift));
    }
}

// The file bytes of `mesh`; the per-vertex block the loader skips is filled with 0xAB.
std::vector<unsigned char> modelFile(const Mesh& mesh) {
    std::vector<unsigned char> bytes;
    const size_t n = mesh.positions.size();
    appendUint32(bytes, static_cast<uint32_t>(n));
    appendUint32(bytes, static_cast<uint32_t>(mesh.indices.size()));
    append(bytes, mesh.positions.data(), n * sizeof(vec3));
    append(bytes, mesh.normals.data(), n * sizeof(vec3));
    append(bytes, mesh.coords.data(), n * sizeof(vec2));
    bytes.insert(bytes.end(), 4 * n, 0xAB);
    append(bytes, mesh.indices.data(), mesh.indices.size() * sizeof(uint16_t));
    return bytes;
}

// Two triangles sharing an edge.
const Mesh kQuad = {
    {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0.5f}, {-1, 1, 0.5f}},
    {{0, 0, 1}, {0, 0.6f, 0.8f}, {0, 0, -1}, {1, 0, 0}},
    {{0, 0}, {1, 0}, {1, 1}, {0, 1}},
    {0, 1, 2, 2, 3, 0},
};

// A drawable holding something else in every field the model writes.
Drawable usedDrawable() {
    Drawable drawable;
    drawable.mMode = GL_POINTS;
    drawable.mDimension = 2;
    drawable.mPositions3.assign(9, vec3(7));
    drawable.mNormals.assign(9, vec3(7));
    drawable.mTextureCoords.assign(9, vec2(7));
    drawable.mIndices.assign(9, 7);
    drawable.mIsPositionsStatic = true;
    drawable.mIsNormalsStatic = true;
    drawable.mIsTextureCoordsStatic = false;
    return drawable;
}

std::vector<unsigned char> bytesOf(ModelObject& model) {
    const auto* begin = static_cast<const unsigned char*>(model.getBuffer());
    return std::vector<unsigned char>(begin, begin + model.getLength());
}

ModelObject* adopt(ModelObject& model, const std::vector<unsigned char>& bytes) {
    model.setBuffer(bytes.data(), static_cast<unsigned>(bytes.size()));
    return &model;
}

TEST(ModelObjectTest, FillDrawableCopiesTheModelAndSkipsThePerVertexBlock) {
    ModelObject model;
    adopt(model, modelFile(kQuad));
    Drawable drawable = usedDrawable();
    drawable.mIsIndicesChanged = false;
    model.fillDrawable(drawable);
    EXPECT_EQ(drawable.mPositions3, kQuad.positions);
    EXPECT_EQ(drawable.mNormals, kQuad.normals);
    EXPECT_EQ(drawable.mTextureCoords, kQuad.coords);
    EXPECT_EQ(drawable.mIndices, kQuad.indices);
    EXPECT_EQ(drawable.mMode, GLenum(GL_TRIANGLES));
    EXPECT_EQ(drawable.mDimension, 3u);
    EXPECT_FALSE(drawable.mIsPositionsStatic);
    EXPECT_FALSE(drawable.mIsNormalsStatic);
    EXPECT_TRUE(drawable.mIsTextureCoordsStatic);
    EXPECT_FALSE(drawable.mIsIndicesChanged);  // left to the renderer's constructor
    EXPECT_EQ(drawable.mPositions2.size(), 0u);
}

TEST(ModelObjectTest, WithoutIndicesTheDrawableHasNone) {
    Mesh triangle = kQuad;
    triangle.indices.clear();
    ModelObject model;
    adopt(model, modelFile(triangle));
    Drawable drawable = usedDrawable();
    model.fillDrawable(drawable);
    EXPECT_EQ(drawable.mPositions3, kQuad.positions);
    EXPECT_TRUE(drawable.mIndices.empty());

    // No vertices either: an eight-byte header is a valid, empty model.
    ModelObject empty;
    adopt(empty, modelFile(Mesh{}));
    empty.fillDrawable(drawable);
    EXPECT_TRUE(drawable.mPositions3.empty());
    EXPECT_TRUE(drawable.mNormals.empty());
    EXPECT_TRUE(drawable.mTextureCoords.empty());
    empty.scale(3);
    EXPECT_EQ(empty.getLength(), 8u);
}

TEST(ModelObjectTest, ScaleMultipliesPositionsOnly) {
    const std::vector<unsigned char> bytes = modelFile(kQuad);
    ModelObject model;
    adopt(model, bytes);
    model.scale(2);
    Drawable drawable;
    model.fillDrawable(drawable);
    for (size_t i = 0; i < kQuad.positions.size(); ++i) {
        EXPECT_EQ(drawable.mPositions3[i], kQuad.positions[i] * 2.0f);
    }
    EXPECT_EQ(drawable.mNormals, kQuad.normals);
    EXPECT_EQ(drawable.mTextureCoords, kQuad.coords);
    EXPECT_EQ(drawable.mIndices, kQuad.indices);
    // Past the positions, the buffer is byte for byte what it was.
    const size_t positionsEnd = 8 + 12 * kQuad.positions.size();
    const std::vector<unsigned char> scaled = bytesOf(model);
    ASSERT_EQ(scaled.size(), bytes.size());
    EXPECT_TRUE(
        std::equal(scaled.begin() + positionsEnd, scaled.end(), bytes.begin() + positionsEnd));
}

TEST(ModelObjectTest, SetBufferAppendsSoTheFirstHeaderStays) {
    Mesh triangle = kQuad;
    triangle.positions.resize(3);
    triangle.normals.resize(3);
    triangle.coords.resize(3);
    triangle.indices = {2, 1, 0};
    const std::vector<unsigned char> first = modelFile(triangle);
    const std::vector<unsigned char> second = modelFile(kQuad);
    ModelObject model;
    adopt(model, first);
    adopt(model, second);
    EXPECT_EQ(model.getLength(), first.size() + second.size());
    Drawable drawable;
    model.fillDrawable(drawable);
    EXPECT_EQ(drawable.mPositions3, triangle.positions);
    EXPECT_EQ(drawable.mIndices, triangle.indices);
}

// Buffers that do not hold the model their header declares: nothing is read past the end,
// each operation logs one line, and fillDrawable leaves the model's lists empty.
TEST(ModelObjectTest, BuffersShorterThanTheirModelAreRefused) {
    const std::vector<unsigned char> valid = modelFile(kQuad);
    std::vector<unsigned char> headerOnly;
    appendUint32(headerOnly, 1);
    appendUint32(headerOnly, 0);
    // 36 N wraps to 32 in 32 bits: a 32-bit size check would accept 40 bytes.
    std::vector<unsigned char> wrapping;
    appendUint32(wrapping, 0x071C71C72u);
    appendUint32(wrapping, 0);
    wrapping.resize(40);
    std::vector<unsigned char> hugeIndices;
    appendUint32(hugeIndices, 0);
    appendUint32(hugeIndices, 0xFFFFFFFFu);
    hugeIndices.resize(64);
    const std::vector<std::vector<unsigned char>> cases = {
        {},
        {1, 0, 0, 0, 0, 0, 0},
        std::vector<unsigned char>(valid.begin(), valid.end() - 1),
        headerOnly,
        wrapping,
        hugeIndices,
    };
    for (size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE("case " + std::to_string(i));
        qam::test::LogCapture log;
        ModelObject model;
        std::vector<unsigned char> bytes = cases[i];
        bytes.shrink_to_fit();
        model.setBuffer(bytes.data(), static_cast<unsigned>(bytes.size()));
        model.scale(2);
        Drawable drawable = usedDrawable();
        model.fillDrawable(drawable);
        EXPECT_TRUE(drawable.mPositions3.empty());
        EXPECT_TRUE(drawable.mNormals.empty());
        EXPECT_TRUE(drawable.mTextureCoords.empty());
        EXPECT_TRUE(drawable.mIndices.empty());
        EXPECT_EQ(drawable.mMode, GLenum(GL_POINTS));  // nothing else was touched
        EXPECT_EQ(bytesOf(model), bytes);
        const std::vector<std::string> lines = log.messages();
        ASSERT_EQ(lines.size(), bytes.empty() ? 2u : 3u);
        EXPECT_EQ(lines.back().rfind("ModelObject fillDrawable: ", 0), 0u) << lines.back();
    }
}

TEST(ModelObjectTest, RefusalsNameTheSizes) {
    qam::test::LogCapture log;
    const std::vector<unsigned char> valid = modelFile(kQuad);
    ModelObject shortModel;
    shortModel.setBuffer(valid.data(), static_cast<unsigned>(valid.size() - 1));
    ModelObject noHeader;
    noHeader.setBuffer(valid.data(), 5);
    noHeader.scale(1);
    EXPECT_EQ(log.messages(),
              (std::vector<std::string>{
                  "ModelObject setBuffer: 4 vertices and 6 indices need 164 bytes, only 163 "
                  "given, model ignored",
                  "ModelObject setBuffer: 5 bytes hold no model header, model ignored",
                  "ModelObject scale: 5 bytes hold no model header, model ignored"}));
}

// Models read from the application's assets, here a temporary directory.
class ModelObjectAssetTest : public ::testing::Test {
  protected:
    void SetUp() override {
        char pattern[] = "/tmp/qam-model-XXXXXX";
        mDirectory = mkdtemp(pattern);
        mSavedManager = File::getAssetManager();
        File::getAssetManager() = vi::AssetDirectory::open(mDirectory);
    }
    void TearDown() override {
        vi::AssetDirectory::close(File::getAssetManager());
        File::getAssetManager() = mSavedManager;
        std::system(("rm -rf " + mDirectory).c_str());
    }
    void writeAsset(const std::string& name, const std::vector<unsigned char>& bytes) {
        FILE* file = fopen((mDirectory + "/" + name).c_str(), "wb");
        fwrite(bytes.data(), 1, bytes.size(), file);
        fclose(file);
    }

    std::string mDirectory;
    AAssetManager* mSavedManager = nullptr;
};

TEST_F(ModelObjectAssetTest, LoadReadsTheNameWithBinAppended) {
    writeAsset("quad.bin", modelFile(kQuad));
    writeAsset("quad", {0, 0, 0, 0, 0, 0, 0, 0});  // never read: ".bin" is appended
    ModelObject model("quad");
    Drawable drawable;
    model.fillDrawable(drawable);
    EXPECT_EQ(drawable.mPositions3, kQuad.positions);
    EXPECT_EQ(drawable.mIndices, kQuad.indices);

    // Loading over a model replaces it from the start.
    Mesh triangle = kQuad;
    triangle.indices = {3, 2, 1};
    writeAsset("triangle.bin", modelFile(triangle));
    model.load("triangle");
    EXPECT_EQ(model.getLength(), modelFile(triangle).size());
    model.fillDrawable(drawable);
    EXPECT_EQ(drawable.mIndices, triangle.indices);
}

TEST_F(ModelObjectAssetTest, AMissingModelEndsTheProcess) {
    EXPECT_EXIT(ModelObject("absent"), ::testing::ExitedWithCode(88),
                "Invalid file name: \"absent\\.bin\"");
}

// Models drawn through a vi::Renderer: each vertex is coloured (u, v, normal z).
class ModelObjectDrawTest : public qam::test::RenderCoreTest {
  protected:
    void draw(Drawable& drawable) {
        static const char* const kVertex =
            "attribute vec3 aPosition;\n"
            "attribute vec3 aNormal;\n"
            "attribute vec2 aTexCoord;\n"
            "varying vec3 vColor;\n"
            "void main() {\n"
            "    vColor = vec3(aTexCoord, aNormal.z);\n"
            "    gl_Position = vec4(aPosition, 1.0);\n"
            "}\n";
        static const char* const kFragment =
            "precision mediump float;\n"
            "varying vec3 vColor;\n"
            "void main() { gl_FragColor = vec4(vColor, 1.0); }\n";
        Renderer renderer(program(kVertex, kFragment), drawable);
        ASSERT_EQ(renderer.addAttribute("aPosition", drawable.mPositions3.data(), 3,
                                        drawable.mIsPositionsStatic),
                  0);
        ASSERT_EQ(renderer.addAttribute("aNormal", drawable.mNormals.data(), 3,
                                        drawable.mIsNormalsStatic),
                  1);
        ASSERT_EQ(renderer.addAttribute("aTexCoord", drawable.mTextureCoords.data(), 2,
                                        drawable.mIsTextureCoordsStatic),
                  2);
        renderer.draw();
    }
};

TEST_F(ModelObjectDrawTest, AModelWithoutIndicesIsDrawnWithDrawArrays) {
    // The lower-left half of the viewport, coloured (1, 0, 1).
    const Mesh triangle = {{{-1, -1, 0}, {1, -1, 0}, {-1, 1, 0}},
                           {{0, 0, 1}, {0, 0, 1}, {0, 0, 1}},
                           {{1, 0}, {1, 0}, {1, 0}},
                           {}};
    ModelObject model;
    adopt(model, modelFile(triangle));
    Drawable drawable;
    model.fillDrawable(drawable);
    GLCallCounter calls;
    draw(drawable);
    EXPECT_EQ(calls.count("glDrawArrays"), 1);
    EXPECT_EQ(calls.count("glDrawElements"), 0);
    EXPECT_PIXEL_NEAR(pixel(4, 4), 0xFF00FFFFu, 0);
    EXPECT_PIXEL_NEAR(pixel(4, 56), 0xFF00FFFFu, 0);
    EXPECT_PIXEL_NEAR(pixel(60, 60), 0x00000000u, 0);
}

TEST_F(ModelObjectDrawTest, AnIndexedScaledModelCoversTheMiddle) {
    // A full-viewport quad coloured (0, 1, 0.5), halved by scale().
    const Mesh quad = {{{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}},
                       std::vector<vec3>(4, vec3(0, 0, 0.5f)),
                       std::vector<vec2>(4, vec2(0, 1)),
                       {0, 1, 2, 2, 3, 0}};
    ModelObject model;
    adopt(model, modelFile(quad));
    model.scale(0.5f);
    Drawable drawable;
    model.fillDrawable(drawable);
    GLCallCounter calls;
    draw(drawable);
    EXPECT_EQ(calls.count("glDrawElements"), 1);
    EXPECT_EQ(calls.count("glDrawArrays"), 0);
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0x00FF80FFu, 1);
    EXPECT_PIXEL_NEAR(pixel(17, 46), 0x00FF80FFu, 1);
    EXPECT_PIXEL_NEAR(pixel(8, 8), 0x00000000u, 0);
    EXPECT_PIXEL_NEAR(pixel(56, 32), 0x00000000u, 0);
}

}  // namespace
