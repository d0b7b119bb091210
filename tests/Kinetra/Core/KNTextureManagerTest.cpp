#include "Kinetra/Core/KNTextureManager.h"

#include <cstdlib>
#include <cstring>

#include "Kinetra/Core/KNFBO.h"
#include "tests/Kinetra/Core/CoreTestSupport.h"

namespace {

using Kinetra::_TEXTURE_COLOR_BUFFER;
using Kinetra::KNVector3D;
using UV = std::vector<KNVector3D<float>>;
using Pixels = std::vector<uint32_t>;

// A malloc'd colour buffer, as generateTexture expects to free it.
_TEXTURE_COLOR_BUFFER makeBuffer(int width, int height, int channels,
                                 const std::vector<unsigned char>& bytes) {
    auto* pixels = static_cast<unsigned char*>(malloc(bytes.size()));
    memcpy(pixels, bytes.data(), bytes.size());
    return {width, height, pixels, {}, static_cast<int32_t>(bytes.size()), channels};
}

class KNTextureManagerTest : public CoreTest {
  protected:
    Kinetra::KNTextureManager& manager = *Kinetra::KNTextureManager::getInstancePtr();
    Pixels corners(GLuint texture) {
        show(texture);
        return {pixel(2, 2), pixel(61, 2), pixel(2, 61), pixel(61, 61)};
    }
};

TEST_F(KNTextureManagerTest, UploadsByNameIntoOneTextureWithOptionsForOneUpload) {
    const unsigned id = upload("tile", rgba({kRed, kGreen, kBlue, kWhite}), 2, 2);
    EXPECT_EQ(corners(id), (Pixels{kRed, kGreen, kBlue, kWhite}));

    // By name the same texture takes the new data; the options hold for one upload.
    manager.setTextureWrapOption(GL_REPEAT);
    manager.setTextureMagFilterOption(GL_NEAREST);
    EXPECT_EQ(upload("tile", rgba({kRed, kGreen}), 2, 1), id);
    EXPECT_EQ(texParameter(GL_TEXTURE_WRAP_T), GL_REPEAT);
    EXPECT_EQ(corners(id), (Pixels{kRed, kGreen, kRed, kGreen}));
    upload("tile", rgba({kRed, kGreen}), 2, 1);
    EXPECT_EQ(texParameter(GL_TEXTURE_WRAP_T), GL_MIRRORED_REPEAT);
    // A replacement writes into the same texture and spends the options too.
    manager.setTextureWrapOption(GL_REPEAT);
    manager.replaceTextureData(id, rgba({kBlue}).data(), 1, 1);  // the left texel only
    EXPECT_EQ(corners(id), (Pixels{kBlue, kGreen, kBlue, kGreen}));

    // Luminance rows of three bytes need an unpack alignment of 1.
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    manager.setTexturePixelFormat(GL_LUMINANCE);
    const unsigned grey = upload("grey", {0x40, 0x40, 0x40, 0xC0, 0xC0, 0xC0}, 3, 2);
    EXPECT_EQ(get(GL_UNPACK_ALIGNMENT), 1);
    EXPECT_EQ(texParameter(GL_TEXTURE_WRAP_S), GL_MIRRORED_REPEAT);
    EXPECT_EQ(corners(grey), (Pixels{0x404040FFu, 0x404040FFu, 0xC0C0C0FFu, 0xC0C0C0FFu}));

    manager.deleteTexture("tile");
    EXPECT_EQ(std::pair(glIsTexture(id), manager.getTextureID("tile")),
              std::pair(GLboolean{GL_FALSE}, 0u));
    Kinetra::KNTextureManager::ReleaseInstance();  // deletes the rest
    EXPECT_FALSE(glIsTexture(grey));
}

TEST_F(KNTextureManagerTest, AfterAContextChangeAnUploadRenewsTheSameRecord) {
    upload("bg", rgba({kGreen, kGreen, kGreen, kGreen}), 4, 1);
    manager.setTextureId("other", 77, 4, 4);
    loseContext();
    manager.contextChanged();
    EXPECT_EQ(std::pair(manager.getTextureID("bg"), manager.getTextureID("other")),
              std::pair(0u, 0u));
    const unsigned renewed = upload("bg", rgba({kBlue, kBlue, kBlue, kBlue}), 2, 2);
    EXPECT_EQ(manager.getTextureID("bg"), renewed);
    // The record took the new size (a square crops 720 x 1280 to u 0.21875) and is the only one.
    UV uv(4);
    manager.normalizeTextureCoord(uv, 720, 1280);
    manager.deleteTexture("bg");
    EXPECT_EQ(std::pair(uv[0].x, manager.getTextureID("bg")), std::pair(0.21875f, 0u));
}

TEST_F(KNTextureManagerTest, CoordinatesCropTheLastBackgroundRecordToTheScreen) {
    UV uv(6, KNVector3D<float>{9, 9, 9});
    manager.normalizeTextureCoord(uv, 720, 1280);  // no "bg": untouched
    manager.setTextureId("bg", 41, 1000, 0);       // a zero side counts as none
    manager.normalizeTextureCoord(uv, 720, 1280);
    expectFloats(flatUV(uv), std::vector<float>(8, 9));
    // A handed-in name keeps one record, with the latest size; margins of 0.21875.
    manager.setTextureId("bg", 42, 1000, 1000);
    manager.normalizeTextureCoord(uv, 720, 1280);
    const float u0 = 0.21875f, u1 = 0.78125f;
    expectFloats(flatUV(uv), {u0, 1, u1, 1, u0, 0, u1, 0});
    // The first four are written whole, z included; the rest are left.
    EXPECT_EQ(std::pair(uv[3].z, uv[4].x), std::pair(0.0f, 9.0f));
    manager.normalizeTextureCoord(uv, 1280, 720);  // a wide screen crops rows instead
    expectFloats(flatUV(uv), {0, u1, 1, u1, 0, u0, 1, u0});

    // The last record of the name counts; deleting takes the first and keeps the order.
    manager.addTextureContext("x", 3, 1, 1, false);
    manager.addTextureContext("bg", 4, 1080, 1920, false);
    manager.normalizeTextureCoord(uv, 720, 1280);
    EXPECT_FLOAT_EQ(uv[1].x, 1.0f);  // 1080 x 1920 on 720 x 1280: the whole image
    manager.deleteTexture("bg");
    EXPECT_EQ(std::pair(manager.getTextureID("bg"), manager.getTextureID("x")), std::pair(4u, 3u));
    const std::string longName(200, 'n');  // kept to the 127 characters a record holds
    manager.setTextureId(longName.c_str(), 9, 1, 1);
    EXPECT_EQ(manager.getTextureID(longName.substr(0, 127).c_str()), 9u);
}

TEST_F(KNTextureManagerTest, ColourBuffersAreCopiedAndUploadedOnce) {
    auto pixels = rgba({kRed, kGreen, kBlue, kWhite});
    manager.setTextureColor("pattern", pixels.data(), 2, 2);
    pixels[0] = 0;  // the manager holds its own copy
    _TEXTURE_COLOR_BUFFER* buffer = manager.getTextureColor("pattern");
    ASSERT_NE(buffer, nullptr);
    manager.setTextureMagFilterOption(GL_NEAREST);
    const unsigned id = manager.generateTexture(buffer, false);
    EXPECT_EQ(std::pair(texParameter(GL_TEXTURE_MIN_FILTER), texParameter(GL_TEXTURE_WRAP_S)),
              std::pair(GLint{GL_NEAREST}, GLint{GL_MIRRORED_REPEAT}));
    EXPECT_EQ(buffer->pixels, nullptr);
    EXPECT_EQ(corners(id), (Pixels{kRed, kGreen, kBlue, kWhite}));

    // Refilling does not free the earlier copy, which a copy of the buffer still uploads.
    manager.setTextureColor("pattern", pixels.data(), 2, 2);
    _TEXTURE_COLOR_BUFFER earlier{};
    manager.CopyTextureContext(&earlier, buffer);
    auto green = rgba({kGreen});
    manager.setTextureColor("pattern", green.data(), 1, 1);
    EXPECT_EQ(corners(manager.generateTexture(&earlier, false)),
              (Pixels{0x0000FFu, kGreen, kBlue, kWhite}));  // with its red byte zeroed

    // Three channels upload as GL_RGB with rows of 9 bytes, packed.
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    _TEXTURE_COLOR_BUFFER rgb =
        makeBuffer(3, 2, 3, {255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 255, 0, 255, 0, 255, 0, 0});
    EXPECT_EQ(corners(manager.generateTexture(&rgb, false)), (Pixels{kRed, kBlue, kBlue, kRed}));
}

TEST_F(KNTextureManagerTest, MipmapsAverageTheImageAndCubeFacesGoWhereTold) {
    // An 8 x 8 blue image with a red centre of 2 x 2, drawn into one pixel: the centre without
    // mipmaps, the average of the whole image (4 of 64 texels red) with them.
    std::vector<unsigned char> bytes;
    for (int k = 0; k < 64; ++k) {
        const auto one =
            rgba({(k % 8 == 3 || k % 8 == 4) && (k / 8 == 3 || k / 8 == 4) ? kRed : kBlue});
        bytes.insert(bytes.end(), one.begin(), one.end());
    }
    glViewport(0, 0, 1, 1);
    for (bool mipmap : {false, true}) {
        _TEXTURE_COLOR_BUFFER buffer = makeBuffer(8, 8, 4, bytes);
        show(manager.generateTexture(&buffer, mipmap));
        EXPECT_PIXEL_NEAR(pixel(0, 0), mipmap ? 0x1000EFFFu : kRed, 2);
    }
    glViewport(0, 0, kWidth, kHeight);

    const char* const kCubeFragment =
        "precision mediump float;\nuniform samplerCube uTexture;\n"
        "void main() { gl_FragColor = textureCube(uTexture, vec3(";
    GLuint cube = 0;
    glGenTextures(1, &cube);
    const std::pair<uint32_t, const char*> faces[6] = {
        {kRed, "1, 0, 0"},    {kGreen, "-1, 0, 0"},     {kBlue, "0, 1, 0"},
        {kWhite, "0, -1, 0"}, {0x00FFFFFFu, "0, 0, 1"}, {0xFF00FFFFu, "0, 0, -1"}};
    for (unsigned face = 0; face < 6; ++face) {
        _TEXTURE_COLOR_BUFFER buffer = makeBuffer(1, 1, 4, rgba({faces[face].first}));
        manager.generateCubeTexture(&buffer, GL_TEXTURE_CUBE_MAP_POSITIVE_X + face, cube);
    }
    glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    for (const auto& [colour, direction] : faces) {
        paint(0, -1, 1, 0, (kCubeFragment + std::string(direction) + ")); }").c_str());
        EXPECT_PIXEL_NEAR(pixel(20, 20), colour, 0) << direction;
    }
}

// Null pixels give a texture of the size asked for, with the pending options, to render into.
TEST_F(KNTextureManagerTest, NullPixelsMakeATextureOfThatSizeToRenderInto) {
    manager.setTextureMagFilterOption(GL_NEAREST);
    manager.setTextureWrapOption(GL_REPEAT);
    const unsigned id = manager.setTexture("target", nullptr, 16, 8);
    ASSERT_NE(id, 0u);
    EXPECT_EQ(std::pair(texParameter(GL_TEXTURE_MIN_FILTER), texParameter(GL_TEXTURE_WRAP_T)),
              std::pair(GLint{GL_NEAREST}, GLint{GL_REPEAT}));
    Kinetra::KNFBO fbo;  // its framebuffer, with the manager's texture as the colour instead
    fbo.createFBOSurface(16, 8);
    fbo.bindFBOSurface();
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, id, 0);
    ASSERT_EQ(glCheckFramebufferStatus(GL_FRAMEBUFFER),
              static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE));
    paint(kRed, -1, 0);
    paint(kBlue, 0, 1);
    fbo.unbindFBOSurface(kWidth, kHeight);
    EXPECT_EQ(corners(id), (Pixels{kRed, kBlue, kRed, kBlue}));
}

TEST_F(KNTextureManagerTest, OnlyInputItWouldReadUnboundedIsDroppedLoggedOncePerCause) {
    auto pixels = rgba({kRed});
    const unsigned id = upload("kept", pixels, 1, 1);
    manager.setTextureColor("buffer", pixels.data(), 1, 1);
    _TEXTURE_COLOR_BUFFER* buffer = manager.getTextureColor("buffer");
    UV shortArray(3, KNVector3D<float>{5, 5, 5});

    // Null names, buffers and bytes it would read, a buffer smaller than its size, and a short
    // array once there is a background to crop to.
    LogCapture log;
    manager.setTextureId("bg", 42, 1000, 1000);
    manager.setTextureWrapOption(GL_REPEAT);
    for (int round = 0; round < 2; ++round) {
        _TEXTURE_COLOR_BUFFER tooSmall = makeBuffer(4, 4, 4, pixels);
        EXPECT_EQ(
            (std::vector<unsigned>{
                manager.setTexture(nullptr, pixels.data(), 1, 1), manager.getTextureID(nullptr),
                manager.generateTexture(nullptr, true), manager.generateTexture(&tooSmall, false)}),
            std::vector<unsigned>(4, 0));
        free(tooSmall.pixels);
        manager.setTextureId(nullptr, 3, 1, 1);
        manager.addTextureContext(nullptr, 3, 1, 1, false);
        manager.setTextureColor("buffer", nullptr, 1, 1);
        manager.setTextureColor("buffer", pixels.data(), -1, 1);
        EXPECT_EQ(manager.getTextureColor(nullptr), nullptr);
        manager.CopyTextureContext(nullptr, buffer);
        manager.deleteTexture(nullptr);
        manager.normalizeTextureCoord(shortArray, 720, 1280);
    }
    EXPECT_EQ(log.messages().size(), 11u);

    // Nothing else changed: the records, the buffer, its pixels and the pending option.
    EXPECT_EQ(shortArray[0].x, 5);
    EXPECT_EQ(manager.getTextureID("kept"), id);
    ASSERT_NE(buffer->pixels, nullptr);
    EXPECT_EQ(buffer->pixels[0], 0xFF);
    upload("wrapped", pixels, 1, 1);
    EXPECT_EQ(texParameter(GL_TEXTURE_WRAP_S), GL_REPEAT);
}

}  // namespace
