#include <cstring>

#include "Common/Renderer/Base/ModelObject.h"
#include "Common/Renderer/Base/Texture.h"
#include "tests/Common/Native/HostFixture.h"
#include "tests/support/LogCapture.h"

namespace {

using vi::Host;
using Calls = std::vector<std::string>;

class HostAssetsTest : public qam::test::HostTest {
  protected:
    vi::Texture* texture(const char* name) {
        auto found = effect()->mTextures->find(name);
        return found == effect()->mTextures->end() ? nullptr : found->second;
    }
    // Drops every texture loaded for the fixture's context, so tests start clean.
    void TearDown() override {
        if (effect() != nullptr) {
            for (const char* name : {"bg", "noise", "mask"}) {
                Host::loadTexture(mSlot, name, nullptr, 0, 0, 0);
            }
        }
        HostTest::TearDown();
    }
};

TEST_F(HostAssetsTest, BackgroundPixelsBecomeOpaqueRgbaAndTheCallersArrayIsLeftSwapped) {
    start();
    int32_t pixels[1] = {0x00112233};
    Host::loadTexture(mSlot, "bg", pixels, 1, 1, 1);
    const auto* bytes = static_cast<const unsigned char*>(texture("bg")->mBuffer);
    EXPECT_EQ(bytes[0], 0x11);
    EXPECT_EQ(bytes[1], 0x22);
    EXPECT_EQ(bytes[2], 0x33);
    EXPECT_EQ(bytes[3], 0xFF);
    EXPECT_EQ(static_cast<uint32_t>(pixels[0]), 0xFF332211u);

    int32_t other[1] = {0x00112233};  // any other name keeps its alpha
    Host::loadTexture(mSlot, "noise", other, 1, 1, 1);
    EXPECT_EQ(static_cast<uint32_t>(other[0]), 0x00332211u);
}

TEST_F(HostAssetsTest, ReloadingANameSwapsPixelsInTheSameTextureAndNotifiesAReadyEffect) {
    std::vector<std::string> names;
    ASSERT_TRUE(Host::loadEffect(mSlot, RECORDING_EFFECT_PATH, names));
    int32_t first[4] = {0, 0, 0, 0};
    Host::loadTexture(mSlot, "noise", first, 4, 2, 2);
    vi::Texture* loaded = texture("noise");
    int32_t second[1] = {0x7F00FF00};
    Host::loadTexture(mSlot, "noise", second, 1, 1, 1);  // not ready: no hook
    EXPECT_EQ(texture("noise"), loaded);
    EXPECT_EQ(loaded->mWidth, 1u);
    EXPECT_EQ(loaded->mTexelSize, glm::vec2(1.0f, 1.0f));
    Host::init(mSlot, kWidth, kHeight, false);
    Host::loadTexture(mSlot, "noise", first, 4, 2, 2);
    EXPECT_EQ(takeCalls(), (Calls{"create", "initLandscape", "onTextureChanged"}));
}

TEST_F(HostAssetsTest, TexturesAreSharedByEffectsOnOneContextAndOutliveThem) {
    start();
    int32_t pixels[1] = {0x10203040};
    Host::loadTexture(mSlot, "mask", pixels, 1, 1, 1);
    vi::HostInstance second;
    start(second);
    EXPECT_EQ(second.get()->mTextures, effect()->mTextures);
    const auto& list = second.get()->mTextureList;
    EXPECT_EQ(std::count(list.begin(), list.end(), texture("mask")), 1);
    Host::destroy(second);
    Host::destroy(mSlot);
    start();
    EXPECT_NE(texture("mask"), nullptr);
}

TEST_F(HostAssetsTest, RemovingATextureKeepsItsNameWithNoTexture) {
    start();
    int32_t pixels[1] = {0};
    Host::loadTexture(mSlot, "mask", pixels, 1, 1, 1);
    vi::Texture* removed = texture("mask");
    Host::loadTexture(mSlot, "mask", nullptr, 0, 0, 0);
    EXPECT_EQ(effect()->mTextures->count("mask"), 1u);
    EXPECT_EQ(texture("mask"), nullptr);
    const auto& list = effect()->mTextureList;
    EXPECT_EQ(std::find(list.begin(), list.end(), removed), list.end());
}

TEST_F(HostAssetsTest, BackgroundOnlyDrawsTheBgTextureOrTheErrorTexture) {
    start();
    qam::test::LogCapture log;
    Host::drawBgOnly(mSlot, kWidth, kHeight);
    Host::drawBgOnly(mSlot, kWidth, kHeight);
    EXPECT_EQ(log.count("NATIVE WARNING: Texture 'bg' not found"), 2);  // not cached
    EXPECT_EQ(effect()->mBackgroundTexture, nullptr);

    // 8 x 8, rows top first as Java hands them over: red, green / blue, white quadrants.
    int32_t quadrants[64];
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x) {
            const uint32_t colour =
                y < 4 ? (x < 4 ? 0xFFFF0000u : 0xFF00FF00u) : (x < 4 ? 0xFF0000FFu : 0xFFFFFFFFu);
            quadrants[y * 8 + x] = static_cast<int32_t>(colour);
        }
    }
    Host::loadTexture(mSlot, "bg", quadrants, 64, 8, 8);
    Host::drawBgOnly(mSlot, kWidth, kHeight);
    EXPECT_EQ(pixel(8, 56), 0xFF0000FFu);   // top left
    EXPECT_EQ(pixel(56, 56), 0x00FF00FFu);  // top right
    EXPECT_EQ(pixel(8, 8), 0x0000FFFFu);    // bottom left
    EXPECT_EQ(pixel(56, 8), 0xFFFFFFFFu);   // bottom right
    EXPECT_EQ(effect()->mBackgroundTexture, texture("bg"));
}

TEST_F(HostAssetsTest, ModelsAreParsedIntoTheEffectsMapAndRemovedByName) {
    start();
    // One vertex, no indices: 8 + 36 bytes.
    unsigned char model[44] = {};
    model[0] = 1;
    const float position[3] = {1.0f, 2.0f, 3.0f};
    memcpy(model + 8, position, sizeof position);
    Host::loadModel(mSlot, "cube", model, sizeof model);
    vi::ModelObject* loaded = effect()->mModels["cube"];
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(loaded->getLength(), 44u);
    Host::loadModel(mSlot, "cube", nullptr, 0);
    EXPECT_EQ(effect()->mModels.count("cube"), 1u);
    Host::loadModel(mSlot, "cube", model, sizeof model);  // replaces without a double free
    EXPECT_NE(effect()->mModels["cube"], nullptr);
    delete effect()->mModels["cube"];
}

TEST_F(HostAssetsTest, BadTextureArgumentsAreDroppedWithALogLine) {
    start();
    qam::test::LogCapture log;
    int32_t pixels[2] = {0, 0};
    Host::loadTexture(mSlot, nullptr, pixels, 2, 1, 2);
    Host::loadTexture(mSlot, "mask", pixels, 2, 2, 2);
    Host::loadTexture(mSlot, "mask", pixels, 2, 0, 2);
    Host::drawBgOnly(mSlot, 0, 10);
    EXPECT_EQ(texture("mask"), nullptr);
    EXPECT_EQ(log.messages(), (Calls{"loadTexture: no texture name",
                                     "loadTexture: 'mask' has 2 pixels for 2x2, ignored",
                                     "loadTexture: 'mask' has size 0x2, ignored",
                                     "drawBgOnly: surface size 0x10 ignored"}));
}

}  // namespace
