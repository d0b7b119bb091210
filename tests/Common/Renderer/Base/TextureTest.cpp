#include "Common/Renderer/Base/Texture.h"

#include <ETC1/etc1.h>
#include <GLES2/gl2.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "tests/support/GLCallCounter.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TextureQuad.h"

namespace {

using qam::test::GLCallCounter;
using vi::Texture;

// A 2 x 2 RGBA image, bottom row first: red, green / blue, white.
const unsigned char kQuadrants[16] = {0xFF, 0, 0,    0xFF, 0,    0xFF, 0,    0xFF,
                                      0,    0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};

class TextureTest : public qam::test::GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        mSaved = Texture::mAllTextures;
        Texture::mAllTextures = &mTextures;
        Texture::mIsNeedToRecycle = false;
    }
    void TearDown() override {
        Texture::mAllTextures = mSaved;
        Texture::mIsNeedToRecycle = false;
    }

    // Draws `texture` over the viewport through its own bind().
    void show(Texture& texture) {
        mQuad.use();
        texture.bind(mQuad.sampler(), 0);
        mQuad.draw();
    }

    // A static texture over a copy of `pixels` that it owns.
    static Texture* ownedTexture(const void* pixels, size_t size, unsigned w, unsigned h,
                                 unsigned channels, bool isStatic = true) {
        void* copy = malloc(size);
        memcpy(copy, pixels, size);
        auto* texture =
            new Texture(copy, w, h, isStatic, false, false, false, false, channels, false);
        texture->setDeletable(true);
        return texture;
    }

    std::vector<Texture*> mTextures;
    std::vector<Texture*>* mSaved = nullptr;
    qam::test::TextureQuad mQuad;
};

TEST_F(TextureTest, ConstructionRegistersAndDerivesSizes) {
    Texture texture(nullptr, 4, 8, true, false, false, false, false, 4, false);
    EXPECT_EQ(mTextures, std::vector<Texture*>{&texture});
    EXPECT_EQ(texture.mKind, 0u);
    EXPECT_EQ(texture.mTexture, 0u);
    EXPECT_EQ(texture.mSize.x, 4.0f);
    EXPECT_EQ(texture.mSize.y, 8.0f);
    EXPECT_EQ(texture.mTexelSize.x, 0.25f);
    EXPECT_EQ(texture.mTexelSize.y, 0.125f);
    EXPECT_EQ(texture.mTarget, GLenum(GL_TEXTURE_2D));
    EXPECT_EQ(texture.mFormat, GLenum(GL_RGBA));
    EXPECT_EQ(texture.mType, GLenum(GL_UNSIGNED_BYTE));
    EXPECT_FALSE(texture.mIsUploaded);
    EXPECT_FALSE(texture.mIsDeletable);
}

TEST_F(TextureTest, FormatFollowsTheChannelCount) {
    qam::test::LogCapture log;
    Texture alpha(nullptr, 1, 1, true, false, false, false, false, 1, false);
    Texture rgb(nullptr, 1, 1, true, false, false, false, false, 3, true);
    Texture two(nullptr, 1, 1, true, false, false, false, false, 2, false);
    EXPECT_EQ(alpha.mFormat, GLenum(GL_ALPHA));
    EXPECT_EQ(rgb.mFormat, GLenum(GL_RGB));
    EXPECT_EQ(rgb.mType, GLenum(GL_FLOAT));
    EXPECT_EQ(two.mFormat, 0u);
    EXPECT_EQ(log.messages(), std::vector<std::string>{
                                  "Texture: unsupported channel count 2, the texture stays empty"});
}

TEST_F(TextureTest, DestroyingATextureListedTwiceRemovesOnlyTheFirstEntry) {
    auto* texture = new Texture(nullptr, 1, 1, true, false, false, false, false, 4, false);
    Texture other(nullptr, 1, 1, true, false, false, false, false, 4, false);
    mTextures.push_back(texture);
    delete texture;
    EXPECT_EQ(mTextures, (std::vector<Texture*>{&other, texture}));
    mTextures.pop_back();
}

TEST_F(TextureTest, StaticRgbaUploadsOnceAndSamplesBack) {
    Texture* texture = ownedTexture(kQuadrants, sizeof kQuadrants, 2, 2, 4);
    texture->allocate();
    EXPECT_TRUE(texture->mIsUploaded);
    ASSERT_EQ(glIsTexture(texture->mTexture), GL_TRUE);
    show(*texture);
    EXPECT_EQ(pixel(10, 10), 0xFF0000FFu);
    EXPECT_EQ(pixel(50, 10), 0x00FF00FFu);
    EXPECT_EQ(pixel(10, 50), 0x0000FFFFu);
    EXPECT_EQ(pixel(50, 50), 0xFFFFFFFFu);

    GLCallCounter calls;
    texture->allocate();  // live: nothing to do
    show(*texture);       // static: bind only
    EXPECT_EQ(calls.count("glGenTextures"), 0);
    EXPECT_EQ(calls.count("glTexImage2D") + calls.count("glTexSubImage2D"), 0);
    delete texture;
}

TEST_F(TextureTest, RgbAndAlphaUploadWithTheDefaultUnpackAlignment) {
    // Rows of 4 RGB texels are 12 bytes: no padding needed at an alignment of 4.
    std::vector<unsigned char> rgb(4 * 4 * 3);
    for (size_t i = 0; i < rgb.size(); i += 3) {
        rgb[i] = 0x20;
        rgb[i + 1] = 0x80;
        rgb[i + 2] = 0xC0;
    }
    Texture* colour = ownedTexture(rgb.data(), rgb.size(), 4, 4, 3);
    colour->allocate();
    show(*colour);
    EXPECT_EQ(pixel(30, 30), 0x2080C0FFu);
    delete colour;

    const unsigned char alpha[16] = {0x40, 0x40, 0x40, 0x40, 0x40, 0x40, 0x40, 0x40,
                                     0x40, 0x40, 0x40, 0x40, 0x40, 0x40, 0x40, 0x40};
    Texture* mask = ownedTexture(alpha, sizeof alpha, 4, 4, 1);
    mask->allocate();
    show(*mask);
    EXPECT_EQ(pixel(30, 30), 0x00000040u);
    delete mask;
}

TEST_F(TextureTest, FloatTexelsUploadWhereTheGLAllowsThem) {
    const char* extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    if (extensions == nullptr || strstr(extensions, "GL_OES_texture_float") == nullptr) {
        GTEST_SKIP() << "no float textures";
    }
    const float texels[4] = {0.25f, 0.5f, 0.75f, 1.0f};
    void* copy = malloc(sizeof texels);
    memcpy(copy, texels, sizeof texels);
    Texture texture(copy, 1, 1, true, false, false, false, false, 4, true);
    texture.setDeletable(true);
    texture.allocate();
    show(texture);
    EXPECT_PIXEL_NEAR(pixel(5, 5), 0x4080BFFFu, 1);
}

TEST_F(TextureTest, Etc1TextureDecodesAndIsUploadedInFullEveryTime) {
    std::vector<unsigned char> rgb(8 * 8 * 3);
    for (size_t i = 0; i < rgb.size(); i += 3) {
        rgb[i] = 0x30;
        rgb[i + 1] = 0x90;
        rgb[i + 2] = 0xF0;
    }
    const unsigned size = etc1_get_encoded_data_size(8, 8);
    ASSERT_EQ(size, 8u * 8u / 2u);
    std::vector<unsigned char> blocks(size);
    ASSERT_EQ(etc1_encode_image(rgb.data(), 8, 8, 3, 8 * 3, blocks.data()), 0);

    Texture texture(blocks.data(), 8, 8, false, false, false, false, true, 3, false);
    texture.allocate();
    EXPECT_FALSE(texture.mIsUploaded);
    GLCallCounter calls;
    show(texture);
    show(texture);
    EXPECT_EQ(calls.count("glCompressedTexImage2D"), 2);
    EXPECT_EQ(calls.count("glTexSubImage2D"), 0);
    EXPECT_FALSE(texture.mIsUploaded);
    EXPECT_PIXEL_NEAR(pixel(20, 20), 0x3090F0FFu, 12);  // ETC1 is lossy
}

TEST_F(TextureTest, DynamicTextureReuploadsWithSubImageOffMali) {
    unsigned char pixels[16];
    memcpy(pixels, kQuadrants, sizeof pixels);
    Texture texture(pixels, 2, 2, false, false, false, false, false, 4, false);
    texture.allocate();
    EXPECT_FALSE(texture.mIsUploaded);     // not static: nothing uploaded yet
    EXPECT_TRUE(Texture::mIsSubImageUse);  // llvmpipe is not a Mali

    GLCallCounter calls;
    show(texture);
    EXPECT_EQ(calls.count("glTexImage2D"), 1);
    EXPECT_TRUE(texture.mIsUploaded);
    memset(pixels, 0x80, sizeof pixels);
    show(texture);
    EXPECT_EQ(calls.count("glTexSubImage2D"), 1);
    EXPECT_EQ(pixel(10, 10), 0x80808080u);
}

TEST(TextureGpuCheck, MaliIsRecognisedInAnyCase) {
    EXPECT_TRUE(Texture::isMaliRenderer("Mali-G78"));
    EXPECT_TRUE(Texture::isMaliRenderer("MALI-T880"));
    EXPECT_TRUE(Texture::isMaliRenderer("mali"));
    EXPECT_FALSE(Texture::isMaliRenderer("Mal"));
    EXPECT_FALSE(Texture::isMaliRenderer("Adreno (TM) 740"));
    EXPECT_FALSE(Texture::isMaliRenderer("llvmpipe (LLVM 15.0.6, 256 bits)"));
    EXPECT_FALSE(Texture::isMaliRenderer(nullptr));
}

TEST_F(TextureTest, RecycleDropsStaticBuffersAfterUpload) {
    Texture::mIsNeedToRecycle = true;
    unsigned char borrowed[16];
    memcpy(borrowed, kQuadrants, sizeof borrowed);
    Texture notOwned(borrowed, 2, 2, true, false, false, false, false, 4, false);
    notOwned.allocate();
    EXPECT_EQ(notOwned.getBuffer(), nullptr);  // dropped, not freed: ASan would object

    Texture* owned = ownedTexture(kQuadrants, sizeof kQuadrants, 2, 2, 4);
    owned->allocate();
    EXPECT_EQ(owned->getBuffer(), nullptr);  // freed: LeakSanitizer checks it
    show(*owned);
    EXPECT_EQ(pixel(10, 10), 0xFF0000FFu);  // the upload happened first
    delete owned;

    Texture* dynamic = ownedTexture(kQuadrants, sizeof kQuadrants, 2, 2, 4, false);
    dynamic->allocate();
    EXPECT_NE(dynamic->getBuffer(), nullptr);
    delete dynamic;
}

TEST_F(TextureTest, AllocateAfterAContextLossBuildsANewTexture) {
    Texture* texture = ownedTexture(kQuadrants, sizeof kQuadrants, 2, 2, 4);
    texture->allocate();
    loseContext();
    texture->contextChanged();
    EXPECT_EQ(texture->mTexture, 0u);
    EXPECT_FALSE(texture->mIsUploaded);
    texture->allocate();
    EXPECT_EQ(glIsTexture(texture->mTexture), GL_TRUE);
    qam::test::TextureQuad quad;  // the fixture's program belongs to the lost context
    quad.use();
    texture->bind(quad.sampler(), 0);
    quad.draw();
    EXPECT_EQ(pixel(50, 50), 0xFFFFFFFFu);
    delete texture;
}

TEST_F(TextureTest, NullAndEmptyBuffersAreGuarded) {
    qam::test::LogCapture log;
    Texture empty(nullptr, 2, 2, true, false, false, false, false, 4, false);
    empty.allocate();  // storage without contents
    EXPECT_TRUE(empty.mIsUploaded);
    Texture zero(nullptr, 0, 0, true, false, false, false, false, 4, false);
    zero.allocate();
    EXPECT_FALSE(zero.mIsUploaded);
    Texture compressed(nullptr, 4, 4, true, false, false, false, true, 3, false);
    compressed.allocate();
    EXPECT_EQ(log.messages(), (std::vector<std::string>{
                                  "Texture: size 0x0 has no pixels, upload skipped",
                                  "Texture: compressed texture without data, upload skipped"}));
}

}  // namespace
