#include "Kinetra/Core/KNTextureManager.h"

#include <GLES2/gl2.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Kinetra/Core/KNShaderManager.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TextureQuad.h"

namespace {

using Kinetra::_TEXTURE_COLOR_BUFFER;
using Kinetra::KNShaderManager;
using Kinetra::KNTextureManager;
using Kinetra::KNVector3D;
using qam::test::GLTest;
using qam::test::LogCapture;
using qam::test::TextureQuad;
using UV = std::vector<KNVector3D<float>>;

constexpr uint32_t kRed = 0xFF0000FFu;
constexpr uint32_t kGreen = 0x00FF00FFu;
constexpr uint32_t kBlue = 0x0000FFFFu;
constexpr uint32_t kWhite = 0xFFFFFFFFu;

// RGBA bytes of 0xRRGGBBAA pixels, in the order given (bottom row first).
std::vector<unsigned char> rgba(std::initializer_list<uint32_t> pixels) {
    std::vector<unsigned char> bytes;
    for (uint32_t p : pixels) {
        for (int shift : {24, 16, 8, 0}) {
            bytes.push_back(static_cast<unsigned char>(p >> shift));
        }
    }
    return bytes;
}

// A malloc'd colour buffer, as generateTexture expects to free it.
_TEXTURE_COLOR_BUFFER makeBuffer(const char* name, int width, int height, int channels,
                                 const std::vector<unsigned char>& bytes) {
    _TEXTURE_COLOR_BUFFER buffer{};
    buffer.width = width;
    buffer.height = height;
    buffer.channels = channels;
    buffer.size = static_cast<int32_t>(bytes.size());
    buffer.pixels = static_cast<unsigned char*>(malloc(bytes.size()));
    memcpy(buffer.pixels, bytes.data(), bytes.size());
    snprintf(buffer.name, sizeof buffer.name, "%s", name);
    return buffer;
}

class KNTextureManagerTest : public GLTest {
  protected:
    KNTextureManager& manager = *KNTextureManager::getInstancePtr();
    TextureQuad quad;

    void TearDown() override { KNTextureManager::ReleaseInstance(); }

    // Draws `texture` over the whole viewport (texel v = 0 at the bottom row).
    void show(GLuint texture) {
        quad.use();
        glActiveTexture(GL_TEXTURE0);
        glBindTexture(GL_TEXTURE_2D, texture);
        glUniform1i(quad.sampler(), 0);
        quad.draw();
    }
    // Fills the viewport with `fragment`, whose sampler uTexture reads `texture` on `target`.
    void sample(GLenum target, GLuint texture, const char* fragment) {
        KNShaderManager shader;
        shader.createProgram(
            "attribute vec2 aPosition;\n"
            "void main() { gl_Position = vec4(aPosition, 0.0, 1.0); }\n",
            fragment);
        static const float corners[] = {-1, -1, 1, -1, -1, 1, 1, 1};
        glUseProgram(shader.getProgram());
        glActiveTexture(GL_TEXTURE0);
        glBindTexture(target, texture);
        glUniform1i(shader.getUniformLoc("uTexture"), 0);
        const GLuint position = static_cast<GLuint>(shader.getAttributeLoc("aPosition"));
        glVertexAttribPointer(position, 2, GL_FLOAT, GL_FALSE, 0, corners);
        glEnableVertexAttribArray(position);
        glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
        glDisableVertexAttribArray(position);
        glUseProgram(0);
    }
    GLint parameter(GLenum name) {
        GLint value = 0;
        glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
        return value;
    }
};

TEST_F(KNTextureManagerTest, OneInstanceUntilReleasedWhichDeletesItsTextures) {
    EXPECT_EQ(KNTextureManager::getInstancePtr(), &manager);
    auto pixels = rgba({kRed});
    const unsigned id = manager.setTexture("one", pixels.data(), 1, 1);
    ASSERT_NE(id, 0u);
    KNTextureManager::ReleaseInstance();
    EXPECT_FALSE(glIsTexture(id));
    EXPECT_EQ(KNTextureManager::getInstancePtr()->getTextureID("one"), 0u);
}

TEST_F(KNTextureManagerTest, UploadsByNameIntoOneTextureAndDrawsIt) {
    auto first = rgba({kRed, kGreen, kBlue, kWhite});
    const unsigned id = manager.setTexture("tile", first.data(), 2, 2);
    ASSERT_NE(id, 0u);
    EXPECT_EQ(manager.getTextureID("tile"), id);
    EXPECT_EQ(manager.checkSameTexture("tile"), id);
    EXPECT_EQ(manager.getTextureID("other"), 0u);
    EXPECT_EQ(parameter(GL_TEXTURE_MIN_FILTER), GL_LINEAR);
    show(id);
    EXPECT_PIXEL_NEAR(pixel(2, 2), kRed, 1);
    EXPECT_PIXEL_NEAR(pixel(61, 2), kGreen, 1);
    EXPECT_PIXEL_NEAR(pixel(2, 61), kBlue, 1);
    EXPECT_PIXEL_NEAR(pixel(61, 61), kWhite, 1);

    // The same name uploads into the same texture and keeps one record.
    auto second = rgba({kBlue});
    EXPECT_EQ(manager.setTexture("tile", second.data(), 1, 1), id);
    show(id);
    EXPECT_PIXEL_NEAR(pixel(61, 61), kBlue, 1);
    manager.deleteTexture("tile");
    EXPECT_FALSE(glIsTexture(id));
    EXPECT_EQ(manager.getTextureID("tile"), 0u);
}

TEST_F(KNTextureManagerTest, OptionsHoldForOneUploadOnly) {
    // Red on the left half, green on the right; u = 1.25 repeats to red, mirrors to green.
    const char* const beyondTheEdge =
        "precision mediump float;\n"
        "uniform sampler2D uTexture;\n"
        "void main() { gl_FragColor = texture2D(uTexture, vec2(1.25, 0.5)); }\n";
    auto pixels = rgba({kRed, kGreen});
    manager.setTextureWrapOption(GL_REPEAT);
    manager.setTextureMagFilterOption(GL_NEAREST);
    const unsigned repeated = manager.setTexture("repeat", pixels.data(), 2, 1);
    EXPECT_EQ(parameter(GL_TEXTURE_WRAP_T), GL_REPEAT);
    sample(GL_TEXTURE_2D, repeated, beyondTheEdge);
    EXPECT_PIXEL_NEAR(pixel(30, 30), kRed, 0);

    manager.setTextureMagFilterOption(GL_NEAREST);
    const unsigned mirrored = manager.setTexture("mirror", pixels.data(), 2, 1);
    EXPECT_EQ(parameter(GL_TEXTURE_WRAP_S), GL_MIRRORED_REPEAT);
    sample(GL_TEXTURE_2D, mirrored, beyondTheEdge);
    EXPECT_PIXEL_NEAR(pixel(30, 30), kGreen, 0);

    // Luminance rows of three bytes need an unpack alignment of 1.
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    const unsigned char grey[] = {0x40, 0x40, 0x40, 0xC0, 0xC0, 0xC0};
    manager.setTexturePixelFormat(GL_LUMINANCE);
    manager.setTextureMagFilterOption(GL_NEAREST);
    const unsigned luminance = manager.setTexture("grey", const_cast<unsigned char*>(grey), 3, 2);
    GLint alignment = 0;
    glGetIntegerv(GL_UNPACK_ALIGNMENT, &alignment);
    EXPECT_EQ(alignment, 1);
    show(luminance);
    EXPECT_PIXEL_NEAR(pixel(32, 10), 0x404040FFu, 0);
    EXPECT_PIXEL_NEAR(pixel(32, 54), 0xC0C0C0FFu, 0);
}

TEST_F(KNTextureManagerTest, AfterAContextChangeAnUploadRenewsTheSameRecord) {
    auto wide = rgba({kGreen, kGreen, kGreen, kGreen});
    manager.setTexture("bg", wide.data(), 4, 1);
    manager.setTextureId("other", 77, 4, 4);
    loseContext();
    manager.contextChanged();
    EXPECT_EQ(manager.getTextureID("bg"), 0u);
    EXPECT_EQ(manager.getTextureID("other"), 0u);

    auto blue = rgba({kBlue, kBlue, kBlue, kBlue});
    const unsigned renewed = manager.setTexture("bg", blue.data(), 2, 2);
    ASSERT_NE(renewed, 0u);
    EXPECT_TRUE(glIsTexture(renewed));
    EXPECT_EQ(manager.getTextureID("bg"), renewed);
    TextureQuad fresh;  // the fixture's program went with the old context
    fresh.use();
    glUniform1i(fresh.sampler(), 0);
    glBindTexture(GL_TEXTURE_2D, renewed);
    fresh.draw();
    EXPECT_PIXEL_NEAR(pixel(32, 32), kBlue, 1);
    // The record took the new size (a square crops 720 x 1280 to u 0.21875 .. 0.78125) and
    // is the only one.
    UV uv(4);
    manager.normalizeTextureCoord(uv, 720, 1280);
    EXPECT_FLOAT_EQ(uv[0].x, 0.21875f);
    manager.deleteTexture("bg");
    EXPECT_EQ(manager.getTextureID("bg"), 0u);
}

TEST_F(KNTextureManagerTest, HandedInTexturesAreRegisteredOnceWithTheirLatestIdAndSize) {
    manager.setTextureId("bg", 41, 1000, 1000);
    manager.setTextureId("bg", 42, 1080, 1920);
    EXPECT_EQ(manager.getTextureID("bg"), 42u);
    UV uv(4);
    manager.normalizeTextureCoord(uv, 720, 1280);
    EXPECT_FLOAT_EQ(uv[1].x, 1.0f);  // 1080 x 1920 on 720 x 1280: the whole image
    manager.deleteTexture("bg");
    EXPECT_EQ(manager.getTextureID("bg"), 0u);  // no second record behind it

    // Names are kept to 127 characters and found again through the same cut.
    const std::string longName(200, 'n');
    manager.setTextureId(longName.c_str(), 9, 1, 1);
    EXPECT_EQ(manager.getTextureID(longName.substr(0, 127).c_str()), 9u);
    EXPECT_EQ(manager.getTextureID(longName.substr(0, 126).c_str()), 0u);
}

TEST_F(KNTextureManagerTest, CoordinatesCropTheBackgroundToTheScreen) {
    UV uv(6, KNVector3D<float>{9, 9, 9});
    manager.normalizeTextureCoord(uv, 720, 1280);  // no "bg": untouched
    EXPECT_FLOAT_EQ(uv[0].x, 9);

    manager.addTextureContext("bg", 1, 1000, 0, false);  // a zero side counts as none
    manager.normalizeTextureCoord(uv, 720, 1280);
    EXPECT_FLOAT_EQ(uv[3].y, 9);

    // The last "bg" record counts: 1000 x 1000 on 720 x 1280 is sx 0.72 < sy 1.28, r 0.5625.
    manager.addTextureContext("bg", 2, 1000, 1000, false);
    manager.normalizeTextureCoord(uv, 720, 1280);
    const float u0 = 0.21875f, u1 = 0.78125f;
    const float expected[4][2] = {{u0, 1}, {u1, 1}, {u0, 0}, {u1, 0}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_FLOAT_EQ(uv[i].x, expected[i][0]) << i;
        EXPECT_FLOAT_EQ(uv[i].y, expected[i][1]) << i;
        EXPECT_FLOAT_EQ(uv[i].z, 0) << i;
    }
    EXPECT_FLOAT_EQ(uv[4].x, 9);  // only the first four are written

    // A wide screen crops rows instead: 1280 x 720 on the square gives v 0.21875 .. 0.78125.
    manager.normalizeTextureCoord(uv, 1280, 720);
    EXPECT_FLOAT_EQ(uv[0].x, 0);
    EXPECT_FLOAT_EQ(uv[1].x, 1);
    EXPECT_FLOAT_EQ(uv[0].y, u1);
    EXPECT_FLOAT_EQ(uv[2].y, u0);
}

TEST_F(KNTextureManagerTest, ColourBuffersAreCopiedAndUploadedOnce) {
    auto pixels = rgba({kRed, kGreen, kBlue, kWhite});
    manager.setTextureColor("pattern", pixels.data(), 2, 2);
    pixels[0] = 0;  // the manager holds its own copy
    _TEXTURE_COLOR_BUFFER* buffer = manager.getTextureColor("pattern");
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(manager.checkSameTextureColor("pattern"), buffer);
    EXPECT_EQ(manager.getTextureColor("missing"), nullptr);
    EXPECT_EQ(buffer->pixels[0], 0xFF);

    manager.setTextureMagFilterOption(GL_NEAREST);
    const unsigned id = manager.generateTexture(buffer, false);
    EXPECT_EQ(parameter(GL_TEXTURE_MIN_FILTER), GL_NEAREST);
    EXPECT_EQ(parameter(GL_TEXTURE_WRAP_S), GL_MIRRORED_REPEAT);
    EXPECT_EQ(buffer->pixels, nullptr);  // freed; the rest stays
    EXPECT_EQ(buffer->width, 2);
    show(id);
    EXPECT_PIXEL_NEAR(pixel(2, 2), kRed, 0);
    EXPECT_PIXEL_NEAR(pixel(61, 61), kWhite, 0);
    glDeleteTextures(1, &id);

    // Refilling does not free the earlier copy, which a copy of the buffer still uploads.
    manager.setTextureColor("pattern", pixels.data(), 2, 2);
    _TEXTURE_COLOR_BUFFER earlier{};
    manager.CopyTextureContext(&earlier, buffer);
    EXPECT_EQ(earlier.pixels, buffer->pixels);
    auto green = rgba({kGreen});
    manager.setTextureColor("pattern", green.data(), 1, 1);
    EXPECT_EQ(buffer->width, 1);
    EXPECT_NE(buffer->pixels, earlier.pixels);
    const unsigned kept = manager.generateTexture(&earlier, false);
    show(kept);
    EXPECT_PIXEL_NEAR(pixel(2, 2), 0x0000FFu, 0);  // the earlier copy's red byte was zeroed
    EXPECT_PIXEL_NEAR(pixel(2, 61), kBlue, 0);
    glDeleteTextures(1, &kept);
}

TEST_F(KNTextureManagerTest, GeneratedTexturesTakeMipmapsAndRgbRowsOfAnyWidth) {
    // An 8 x 8 blue image with a red centre of 2 x 2: drawn into one pixel it is the centre
    // without mipmaps and the average of the whole image with them.
    std::vector<unsigned char> bytes;
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x) {
            const bool centre = (x == 3 || x == 4) && (y == 3 || y == 4);
            auto one = rgba({centre ? kRed : kBlue});
            bytes.insert(bytes.end(), one.begin(), one.end());
        }
    }
    glViewport(0, 0, 1, 1);
    for (bool mipmap : {false, true}) {
        _TEXTURE_COLOR_BUFFER buffer = makeBuffer("centre", 8, 8, 4, bytes);
        const unsigned id = manager.generateTexture(&buffer, mipmap);
        EXPECT_EQ(buffer.pixels, nullptr);
        EXPECT_EQ(parameter(GL_TEXTURE_MIN_FILTER), mipmap ? GL_LINEAR_MIPMAP_LINEAR : GL_LINEAR);
        show(id);
        if (mipmap) {
            EXPECT_PIXEL_NEAR(pixel(0, 0), 0x1000EFFFu, 2);  // 4 of 64 texels are red
        } else {
            EXPECT_PIXEL_NEAR(pixel(0, 0), kRed, 1);
        }
        glDeleteTextures(1, &id);
    }
    glViewport(0, 0, kWidth, kHeight);

    // Three channels upload as GL_RGB with rows of 9 bytes, packed.
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    _TEXTURE_COLOR_BUFFER rgb = makeBuffer(
        "rgb", 3, 2, 3, {255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 255, 0, 255, 0, 255, 0, 0});
    manager.setTextureMagFilterOption(GL_NEAREST);
    const unsigned id = manager.generateTexture(&rgb, false);
    show(id);
    EXPECT_PIXEL_NEAR(pixel(2, 2), kRed, 0);
    EXPECT_PIXEL_NEAR(pixel(61, 2), kBlue, 0);
    EXPECT_PIXEL_NEAR(pixel(2, 61), kBlue, 0);
    EXPECT_PIXEL_NEAR(pixel(61, 61), kRed, 0);
    glDeleteTextures(1, &id);
}

TEST_F(KNTextureManagerTest, CubeFacesAreUploadedOneByOne) {
    GLuint cube = 0;
    glGenTextures(1, &cube);
    const uint32_t colours[6] = {kRed, kGreen, kBlue, kWhite, 0x00FFFFFFu, 0xFF00FFFFu};
    for (unsigned face = 0; face < 6; ++face) {
        _TEXTURE_COLOR_BUFFER buffer = makeBuffer("face", 1, 1, 4, rgba({colours[face]}));
        manager.generateCubeTexture(&buffer, GL_TEXTURE_CUBE_MAP_POSITIVE_X + face, cube);
        EXPECT_EQ(buffer.pixels, nullptr);
    }
    glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    const char* const directions[6] = {"1, 0, 0",  "-1, 0, 0", "0, 1, 0",
                                       "0, -1, 0", "0, 0, 1",  "0, 0, -1"};
    for (int face = 0; face < 6; ++face) {
        const std::string fragment = std::string(
                                         "precision mediump float;\n"
                                         "uniform samplerCube uTexture;\n"
                                         "void main() { gl_FragColor = textureCube(uTexture, "
                                         "vec3(") +
                                     directions[face] + ")); }\n";
        sample(GL_TEXTURE_CUBE_MAP, cube, fragment.c_str());
        EXPECT_PIXEL_NEAR(pixel(20, 20), colours[face], 0) << face;
    }
    glDeleteTextures(1, &cube);
}

TEST_F(KNTextureManagerTest, ReplacingDataKeepsTheTextureAndResetsTheOptions) {
    auto pixels = rgba({kRed, kRed, kRed, kRed});
    const unsigned id = manager.setTexture("live", pixels.data(), 2, 2);
    auto blue = rgba({kBlue});
    manager.setTextureWrapOption(GL_REPEAT);
    manager.replaceTextureData(id, blue.data(), 1, 1);  // the bottom-left texel only
    manager.setTextureMagFilterOption(GL_NEAREST);
    const unsigned next = manager.setTexture("next", pixels.data(), 2, 2);
    EXPECT_EQ(parameter(GL_TEXTURE_WRAP_S), GL_MIRRORED_REPEAT);
    glBindTexture(GL_TEXTURE_2D, id);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    show(id);
    EXPECT_PIXEL_NEAR(pixel(2, 2), kBlue, 0);
    EXPECT_PIXEL_NEAR(pixel(61, 61), kRed, 0);
    EXPECT_NE(next, id);
}

TEST_F(KNTextureManagerTest, DeletingARecordKeepsTheOthersInOrder) {
    manager.addTextureContext("bg", 1, 1000, 1000, false);
    manager.addTextureContext("x", 2, 1, 1, false);
    manager.addTextureContext("bg", 3, 1080, 1920, false);
    manager.deleteTexture("bg");  // the first "bg"
    EXPECT_EQ(manager.getTextureID("x"), 2u);
    EXPECT_EQ(manager.getTextureID("bg"), 3u);
}

TEST_F(KNTextureManagerTest, BadInputIsDroppedWithOneLogLineEach) {
    auto pixels = rgba({kRed});
    const unsigned id = manager.setTexture("kept", pixels.data(), 1, 1);
    manager.setTextureColor("buffer", pixels.data(), 1, 1);
    _TEXTURE_COLOR_BUFFER* buffer = manager.getTextureColor("buffer");
    UV shortArray(3, KNVector3D<float>{5, 5, 5});
    manager.setTextureId("bg", 5, 1000, 1000);

    LogCapture log;
    manager.setTextureWrapOption(GL_REPEAT);
    EXPECT_EQ(manager.setTexture(nullptr, pixels.data(), 1, 1), 0u);
    EXPECT_EQ(manager.setTexture("none", nullptr, 1, 1), 0u);
    EXPECT_EQ(manager.setTexture("none", pixels.data(), 0, 1), 0u);
    manager.setTextureId(nullptr, 3, 1, 1);
    manager.setTextureId("zero", 0, 1, 1);
    manager.addTextureContext(nullptr, 3, 1, 1, false);
    EXPECT_EQ(manager.getTextureID(nullptr), 0u);
    manager.setTextureColor(nullptr, pixels.data(), 1, 1);
    manager.setTextureColor("buffer", nullptr, 1, 1);
    manager.setTextureColor("buffer", pixels.data(), -1, 1);
    EXPECT_EQ(manager.getTextureColor(nullptr), nullptr);
    manager.CopyTextureContext(nullptr, buffer);
    EXPECT_EQ(manager.generateTexture(nullptr, true), 0u);
    _TEXTURE_COLOR_BUFFER empty{};
    EXPECT_EQ(manager.generateTexture(&empty, false), 0u);
    _TEXTURE_COLOR_BUFFER tooSmall = makeBuffer("small", 4, 4, 4, rgba({kRed}));
    EXPECT_EQ(manager.generateTexture(&tooSmall, false), 0u);
    manager.generateCubeTexture(buffer, GL_TEXTURE_2D, id);
    manager.generateCubeTexture(buffer, GL_TEXTURE_CUBE_MAP_POSITIVE_X, 0);
    manager.replaceTextureData(0, pixels.data(), 1, 1);
    manager.replaceTextureData(id, nullptr, 1, 1);
    manager.deleteTexture(nullptr);
    manager.deleteTexture("unknown");
    manager.normalizeTextureCoord(shortArray, 720, 1280);
    EXPECT_EQ(log.messages().size(), 22u);
    EXPECT_EQ(log.count("KNTextureManager::setTexture: null pixels, upload dropped"), 1);
    EXPECT_EQ(log.count("KNTextureManager::generateCubeTexture: not a cube face, ignored"), 1);
    EXPECT_EQ(log.count("KNTextureManager::generateTexture: buffer small is 4x4 in 4 bytes, "
                        "nothing uploaded"),
              1);
    EXPECT_EQ(log.count("KNTextureManager::normalizeTextureCoord: fewer than four coordinates, "
                        "left as it is"),
              1);
    EXPECT_EQ(log.count("KNTextureManager::deleteTexture: no texture named unknown"), 1);

    // Nothing else changed: the records, the buffer, its pixels and the pending option.
    EXPECT_FLOAT_EQ(shortArray[0].x, 5);
    EXPECT_EQ(manager.getTextureID("kept"), id);
    EXPECT_EQ(manager.getTextureID("zero"), 0u);
    ASSERT_NE(buffer->pixels, nullptr);
    EXPECT_EQ(buffer->pixels[0], 0xFF);
    manager.setTextureMagFilterOption(GL_NEAREST);
    manager.setTexture("wrapped", pixels.data(), 1, 1);
    EXPECT_EQ(parameter(GL_TEXTURE_WRAP_S), GL_REPEAT);
    free(tooSmall.pixels);
}

}  // namespace
