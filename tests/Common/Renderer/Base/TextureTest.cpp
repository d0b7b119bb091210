#include "Common/Renderer/Base/Texture.h"

#include <ETC1/etc1.h>

#include <array>
#include <glm/gtc/matrix_transform.hpp>
#include <numeric>

#include "Common/Renderer/Base/TextureCube.h"
#include "tests/Common/Renderer/Base/RenderCoreFixture.h"

namespace {

using namespace qam::test;
using vi::RenderableTexture;
using vi::Renderer;
using vi::Texture;
using vi::TextureCube;

// A 2 x 2 RGBA image, bottom row first: red, green / blue, white.
const unsigned char kQuadrants[16] = {0xFF, 0, 0,    0xFF, 0,    0xFF, 0,    0xFF,
                                      0,    0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};

using TextureTest = RenderCoreTest;
using TextureCubeTest = RenderCoreTest;

TEST_F(TextureTest, StaticTextureUploadsOnceSamplesBackAndIsRebuiltAfterAContextLoss) {
    Texture* quadrants = texture(kQuadrants, 2, 2);
    quadrants->allocate();
    show(*quadrants);
    EXPECT_EQ((std::vector{pixel(10, 10), pixel(50, 10), pixel(10, 50), pixel(50, 50)}),
              (std::vector{0xFF0000FFu, 0x00FF00FFu, 0x0000FFFFu, 0xFFFFFFFFu}));

    GLCallCounter calls;
    quadrants->allocate();  // live: nothing to do
    show(*quadrants);       // static: bind only
    EXPECT_EQ(std::pair(calls.count("glGenTextures"), calls.count("glTexImage2D")),
              std::pair(0, 0));

    loseContext();  // forgotten, then built anew
    quadrants->contextChanged();
    quadrants->allocate();
    show(*quadrants);
    EXPECT_EQ(pixel(50, 50), 0xFFFFFFFFu);
    delete quadrants;
    EXPECT_TRUE(mTextures.empty());
}

// Red | green sampled past the right edge, at u = 1.25 on the left half of the screen and
// 1.75 on the right.
TEST_F(TextureTest, WrapModesClampRepeatOrMirrorPastTheEdge) {
    unsigned char redGreen[8] = {0xFF, 0, 0, 0xFF, 0, 0xFF, 0, 0xFF};
    const char* pastTheEdge =
        "precision mediump float; uniform sampler2D uTexture; varying vec2 vCoord;\n"
        "void main() { gl_FragColor = texture2D(uTexture, vec2(vCoord.x < 0.5 ? 1.25 : 1.75, "
        "0.5)); }";
    const uint32_t red = 0xFF0000FFu, green = 0x00FF00FFu;
    const struct {
        bool repeat, mirrored;
        uint32_t left, right;
    } cases[] = {
        {false, false, green, green},
        {false, true, green, green},  // mirroring only applies to repeat
        {true, false, red, green},
        {true, true, green, red},
    };
    for (const auto& c : cases) {
        Texture texture(redGreen, 2, 1, true, c.repeat, c.mirrored, false, false, 4, false);
        vi::Drawable quad = strip();
        flat(quad, kRed, true, &texture, pastTheEdge)->draw();
        EXPECT_EQ(std::pair(pixel(16, 32), pixel(48, 32)), std::pair(c.left, c.right))
            << "repeat " << c.repeat << ", mirrored " << c.mirrored;
    }
}

// Rows of one RGB texel are 3 bytes. Uploads read them 4-aligned, GL's default, because they
// set only the pack alignment; reading a target back sets the unpack one to 1, and from then
// on rows are read tight.
TEST_F(TextureTest, UploadsReadRowsFourAlignedUntilATargetIsReadBack) {
    unsigned char rows[8] = {0xFF, 0, 0, 0, 0, 0, 0xFF, 0};  // red, padding, blue
    const auto topRow = [&rows] {
        Texture upright(rows, 1, 2, true, false, false, false, false, 3, false);
        upright.allocate();
        show(upright);
        return pixel(32, 48);
    };
    const uint32_t blue = 0x0000FFFFu, black = 0x000000FFu;
    EXPECT_EQ(topRow(), blue);

    std::array<unsigned char, 2 * 2 * 4> target{};
    std::array<void*, 6> faces;
    faces.fill(target.data());
    TextureCube cube(faces, {1, 1, 1, 1, 1, 1}, {1, 1, 1, 1, 1, 1}, true, false, false, false,
                     false);
    cube.allocate();
    RenderableTexture renderTarget(0, 0, 2, 2, false, false, false, false, false);
    renderTarget.writeBuffer(target.data());
    EXPECT_EQ(topRow(), blue);
    renderTarget.readBuffer(target.data());
    EXPECT_EQ(topRow(), black);  // the second row starts at the padding byte
}

TEST_F(TextureTest, ChannelCountOrEtc1ChoosesTheFormatAndEtc1IsUploadedInFullEveryTime) {
    // Rows of 8 RGB texels are 24 bytes: no padding needed at the default alignment of 4.
    std::vector<unsigned char> rgb(8 * 8 * 3);
    for (size_t i = 0; i < rgb.size(); ++i) {
        rgb[i] = "\x30\x90\xF0"[i % 3];
    }
    const std::vector<unsigned char> alpha(64, 0x40);
    using Case = std::tuple<const unsigned char*, unsigned, uint32_t>;
    for (auto [texels, channels, expected] :
         {Case{rgb.data(), 3, 0x3090F0FFu}, Case{alpha.data(), 1, 0x00000040u}}) {
        std::unique_ptr<Texture> made(texture(texels, 8, 8, true, channels));
        made->allocate();
        show(*made);
        EXPECT_EQ(pixel(30, 30), expected) << channels;
    }

    std::vector<unsigned char> blocks(etc1_get_encoded_data_size(8, 8));
    ASSERT_EQ(etc1_encode_image(rgb.data(), 8, 8, 3, 8 * 3, blocks.data()), 0);

    Texture texture(blocks.data(), 8, 8, false, false, false, false, true, 3, false);
    texture.allocate();
    GLCallCounter calls;
    show(texture);
    show(texture);
    EXPECT_EQ(std::pair(calls.count("glCompressedTexImage2D"), calls.count("glTexSubImage2D")),
              std::pair(2, 0));
    EXPECT_PIXEL_NEAR(pixel(20, 20), 0x3090F0FFu, 12);  // ETC1 is lossy
}

TEST_F(TextureTest, DynamicTextureReuploadsWithSubImageOffMaliAndRecycleDropsOnlyStaticBuffers) {
    std::unique_ptr<Texture> dynamic(texture(kQuadrants, 2, 2, false));
    dynamic->allocate();
    GLCallCounter calls;
    show(*dynamic);
    EXPECT_EQ(calls.count("glTexImage2D"), 1);
    memset(dynamic->mBuffer, 0x80, 16);
    show(*dynamic);
    EXPECT_EQ(calls.count("glTexSubImage2D"), 1);
    EXPECT_EQ(pixel(10, 10), 0x80808080u);
    EXPECT_TRUE(Texture::isMaliRenderer("MALI-T880"));
    EXPECT_FALSE(Texture::isMaliRenderer("Adreno (TM) 740"));
    EXPECT_FALSE(Texture::isMaliRenderer(nullptr));

    Texture::mIsNeedToRecycle = true;  // static buffers are dropped after their upload
    unsigned char borrowed[16];
    Texture notOwned(borrowed, 2, 2, true, false, false, false, false, 4, false);
    notOwned.allocate();
    EXPECT_EQ(notOwned.getBuffer(), nullptr);  // dropped, not freed: ASan would object

    std::unique_ptr<Texture> owned(texture(kQuadrants, 2, 2));
    owned->allocate();
    EXPECT_EQ(owned->getBuffer(), nullptr);  // freed: LeakSanitizer checks it
    show(*owned);
    EXPECT_EQ(pixel(10, 10), 0xFF0000FFu);  // the upload happened first

    std::unique_ptr<Texture> second(texture(kQuadrants, 2, 2, false));
    second->allocate();
    EXPECT_NE(second->getBuffer(), nullptr);  // dynamic: kept
}

TEST_F(TextureCubeTest, SixFacesUploadInOrderSampleBackAndUpdateInPlace) {
    const char* fragment =
        "precision mediump float; uniform samplerCube uTexture; uniform vec3 uDirection;\n"
        "void main() { gl_FragColor = textureCube(uTexture, uDirection); }";
    const std::array<uint32_t, 6> colours = {0xFF0000FF, 0x00FF00FF, 0x0000FFFF,
                                             0xFFFF00FF, 0x00FFFFFF, 0xFF00FFFF};
    std::array<void*, 6> faces;
    for (int i = 0; i < 6; ++i) {  // RGBA in memory order
        faces[i] = malloc(4 * 4 * 4);
        std::fill_n(static_cast<uint32_t*>(faces[i]), 16, __builtin_bswap32(colours[i]));
    }
    std::unique_ptr<TextureCube> cube(new TextureCube(faces, {4, 4, 4, 4, 4, 4}, {4, 4, 4, 4, 4, 4},
                                                      true, false, false, false, false));
    cube->setDeletable(true);  // frees the six faces: LeakSanitizer checks it
    vi::Drawable quad = strip();
    std::unique_ptr<Renderer> renderer = flat(quad, kRed, true, cube.get(), fragment);
    glm::vec3 direction;
    renderer->addUniform("uDirection", &direction, vi::Uniform::kVec3, 1);
    const glm::vec3 directions[6] = {{1, 0, 0},  {-1, 0, 0}, {0, 1, 0},
                                     {0, -1, 0}, {0, 0, 1},  {0, 0, -1}};
    for (int i = 0; i < 6; ++i) {
        direction = directions[i];
        renderer->draw();
        EXPECT_EQ(pixel(32, 32), colours[i]) << "face " << i;
    }
    GLCallCounter calls;
    cube->update();  // uploaded once: the faces are refreshed in place
    EXPECT_EQ(calls.count("glTexSubImage2D"), 6);
}

// The pixels of a target as 0xRRGGBBAA, bottom row first.
std::vector<uint32_t> contents(RenderableTexture& target) {
    std::vector<uint32_t> pixels(target.mWidth * target.mHeight);
    target.readBuffer(reinterpret_cast<unsigned char*>(pixels.data()));
    for (uint32_t& pixel : pixels) {
        pixel = __builtin_bswap32(pixel);  // RGBA bytes to 0xRRGGBBAA
    }
    return pixels;
}

std::vector<uint32_t> filled(const RenderableTexture& target, uint32_t rgba) {
    return std::vector<uint32_t>(target.mWidth * target.mHeight, rgba);
}

class RenderableTextureTest : public RenderCoreTest {
  protected:
    // The GL binding and viewport, and the statics that mirror them.
    void expectCurrent(GLuint frameBuffer = 0, glm::uvec2 at = {0, 0},
                       glm::uvec2 size = {kWidth, kHeight}) {
        GLint binding = -1, box[4] = {};
        glGetIntegerv(GL_FRAMEBUFFER_BINDING, &binding);
        glGetIntegerv(GL_VIEWPORT, box);
        EXPECT_EQ(binding, static_cast<GLint>(frameBuffer));
        EXPECT_EQ(glm::ivec4(box[0], box[1], box[2], box[3]), glm::ivec4(at, size));
        EXPECT_EQ(RenderableTexture::mCurrentFrameBuffer, frameBuffer);
        EXPECT_EQ(RenderableTexture::mCurrentFrameBufferPosition, at);
        EXPECT_EQ(RenderableTexture::getViewportSize(), size);
    }

    vi::Drawable mQuad = strip();
};

TEST_F(RenderableTextureTest, ClearWriteAndReadRoundTripAndALostContextIsRebuilt) {
    RenderableTexture target(0, 0, 4, 4, false, false, false, false, false);
    std::vector<unsigned char> pattern(4 * 4 * 4);
    std::iota(pattern.begin(), pattern.end(), 0);
    target.writeBuffer(pattern.data());
    expectCurrent();
    // Read while another target is anchored: that one stays bound.
    RenderableTexture bound(2, 3, 16, 16, false, false, false, false, false);
    GLCallCounter calls;
    bound.allocate();
    // The colour renderbuffer is attached, then replaced by the texture, which is drawn into.
    EXPECT_EQ(
        std::pair(calls.count("glFramebufferRenderbuffer"), calls.count("glFramebufferTexture2D")),
        std::pair(1, 1));
    bound.enableAnchor();
    std::vector<unsigned char> back(pattern.size());
    target.readBuffer(back.data());
    EXPECT_EQ(back, pattern);
    expectCurrent(bound.mFrameBuffer, {2, 3}, {16, 16});
    bound.disableAnchor();
    expectCurrent();

    loseContext();  // forgotten, then rebuilt on the next use
    target.contextChanged();
    target.clear(kRed);
    EXPECT_EQ(contents(target), filled(target, 0xFF0000FFu));
}

TEST_F(RenderableTextureTest, SourceRendersInsideTheOuterPushAndTheOuterTargetComesBack) {
    std::vector<Renderer*> innerList, outerList;
    RenderableTexture inner(innerList, 0, 0, 8, 8, false, false, false, false, false);
    std::unique_ptr<Renderer> green = flat(mQuad, kGreen);
    innerList.push_back(green.get());
    RenderableTexture outer(outerList, 0, 0, 16, 16, false, false, false, false, false);
    std::unique_ptr<Renderer> copy = flat(mQuad, kRed, true, &inner);
    outerList.push_back(copy.get());
    outer.allocate();

    // Were the outer binding or its 16 x 16 viewport lost while the inner target drew, the
    // copy would land in the inner target or cover a quarter of the outer one.
    outer.renderFrame();
    EXPECT_EQ(contents(outer), filled(outer, 0x00FF00FFu));
    expectCurrent();
    outer.clear(kBlue);
    outer.renderFrame(copy.get(), false, kBlue);
    EXPECT_EQ(contents(outer), filled(outer, 0x00FF00FFu));
    expectCurrent();

    // A static source keeps its pixels; sampling a target never uploads.
    inner.mIsStatic = true;
    inner.clear(kBlue);
    GLCallCounter calls;
    outer.renderFrame();
    EXPECT_EQ(contents(outer), filled(outer, 0x0000FFFFu));
    EXPECT_EQ(calls.count("glTexImage2D") + calls.count("glTexSubImage2D"), 0);
}

TEST_F(RenderableTextureTest, WholeListUsesTheTargetsCameraAndGivesTheGlobalOneBack) {
    vi::Drawable drawable = strip3();
    Renderer renderer(program(kMvpVertex, kFlatFragment), drawable);
    renderer.addAttribute("aPosition", drawable.mPositions3.data(), 3, true);
    renderer.addUniform("uColor", &kGreen, vi::Uniform::kVec4, 1);

    std::vector<Renderer*> list{&renderer};
    RenderableTexture target(list, 0, 0, 16, 16, false, false, false, false, false);
    target.mProjectionMatrix = glm::scale(glm::mat4(1.0f), glm::vec3(0.5f, 0.5f, 1.0f));
    target.mViewMatrix = glm::translate(glm::mat4(1.0f), glm::vec3(1.0f, 0.0f, 0.0f));
    const glm::mat4 globalView = glm::translate(glm::mat4(1.0f), glm::vec3(-1.0f, 0.0f, 0.0f));
    *vi::Drawable::mViewMatrix = globalView;
    target.allocate();

    target.renderFrame();  // its camera: the right half, vertical middle; cleared to black
    std::vector<uint32_t> pixels = contents(target);
    EXPECT_EQ(pixels[8 * 16 + 12], 0x00FF00FFu);
    EXPECT_EQ(pixels[8 * 16 + 4], 0x000000FFu);
    EXPECT_EQ(pixels[1 * 16 + 12], 0x000000FFu);
    EXPECT_EQ(*vi::Drawable::mViewMatrix, globalView);
    EXPECT_EQ(*vi::Drawable::mProjectionMatrix, glm::mat4(1.0f));

    target.renderFrame(&renderer, true, kBlue);  // the global camera: the left half
    pixels = contents(target);
    EXPECT_EQ(pixels[1 * 16 + 4], 0x00FF00FFu);
    EXPECT_EQ(pixels[1 * 16 + 12], 0x0000FFFFu);
}

TEST_F(RenderableTextureTest, NullRenderersAreSkippedWithOneLineEachAndNoListDoesNothing) {
    LogCapture log;
    std::vector<Renderer*> list{nullptr};
    RenderableTexture target(list, 0, 0, 4, 4, false, false, false, false, false);
    std::unique_ptr<Renderer> self =
        flat(mQuad, kRed, true, &target);  // draws the target into itself
    list.push_back(self.get());
    for (int frame = 0; frame < 2; ++frame) {
        target.renderFrame(nullptr, true, kRed);
        target.renderFrame();
    }
    expectCurrent();
    EXPECT_EQ(log.messages().size(), 3u);  // no renderer, a null one, the target in itself

    RenderableTexture alone(0, 0, 8, 8, false, false, false, false, false);
    GLCallCounter calls;
    alone.renderFrame();
    EXPECT_EQ(calls.total(), 0);
}

}  // namespace
