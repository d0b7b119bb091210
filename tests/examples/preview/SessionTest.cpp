#include <gtest/gtest.h>

#include <algorithm>

#include "Common/Effect/Timer.h"
#include "Common/Renderer/Base/Texture.h"
#include "examples/preview/Resources.h"
#include "examples/preview/Session.h"
#include "tests/effects/RecordingEffect.h"
#include "tests/examples/preview/ToolRun.h"
#include "tests/support/GLTest.h"

namespace {

using qam::preview::Script;
using qam::preview::Session;

class SessionTest : public qam::test::GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        std::string error;
        ASSERT_TRUE(mSession.loadEffect(RECORDING_EFFECT_PATH, error)) << error;
        mSession.init(kWidth, kHeight);
        recordingEffectReset();
    }

    static std::string calls() {
        std::string all = recordingEffectCalls();
        recordingEffectReset();
        return all;
    }
    // The texture of `width` x `height` in the effect's list.
    static const vi::Texture* texture(unsigned width, unsigned height) {
        const auto& list = *vi::Texture::mAllTextures;
        const auto found = std::find_if(list.begin(), list.end(), [&](const vi::Texture* t) {
            return t->mWidth == width && t->mHeight == height;
        });
        return found == list.end() ? nullptr : *found;
    }

    Session mSession;
};

TEST_F(SessionTest, ScriptEventsReachTheEffectAsTheJavaSideSendsThemAndDrawOnScreen) {
    std::vector<std::string> errors;
    const Script script = qam::preview::parseScript(
        "0 param 0 1\n0 param 2 0.5\n"
        "0 touch down 50% 25%\n0 touch move 16 48 2\n0 touch up 64 0 3\n"
        "0 unlock\n0 affordance 0 64\n0 clear\n",
        "session.txt", errors);
    ASSERT_TRUE(errors.empty());
    for (const auto& event : script.events) {
        mSession.apply(event);
    }
    EXPECT_EQ(calls(), "");  // queued until the frame, as on the device
    mSession.draw();
    EXPECT_EQ(calls(),
              "setParameter 0 1\nsetParameter 2 0.5\n"
              "onTouchDown 0.5 0.75\nonSecondTouchMove 0.25 0.25\nonThirdTouchUp 1 1\n"
              "onShowUnlock\n"
              "onTouchUp 0.5 0.75\nonSecondTouchUp 0 0\nonThirdTouchUp 1 1\nonClear\n"
              "onShowAffordance 0 0\n"
              "onTouchUp 0.5 0.75\nonSecondTouchUp 0 0\nonThirdTouchUp 1 1\nonClear\n"
              "draw\n");
    EXPECT_PIXEL_NEAR(pixel(10, 10), 0xFF0080FFu, 1);

    qam::preview::ScriptEvent event;
    event.kind = qam::preview::ScriptEvent::Kind::Pause;
    mSession.apply(event);
    EXPECT_TRUE(mSession.paused());
    EXPECT_TRUE(vi::Timer::mIsPaused);
    event.kind = qam::preview::ScriptEvent::Kind::Resume;
    mSession.apply(event);
    EXPECT_FALSE(mSession.paused());
    EXPECT_FALSE(vi::Timer::mIsPaused);
}

TEST_F(SessionTest, ImagesGoOverAsJavaArgbAndResourcesComeFromPngFilesBesideTheEffect) {
    const std::string folder = qam::test::freshFolder();
    qam::Image noise{1, 1, {0x11, 0x22, 0x33, 0x44}};
    ASSERT_TRUE(qam::writePng(folder + "/noise.png", noise));
    qam::Image background{2, 1, {1, 2, 3, 4, 5, 6, 7, 8}};
    ASSERT_TRUE(qam::preview::loadResources(mSession, background, folder));

    const vi::Texture* bg = texture(2, 1);
    const vi::Texture* loaded = texture(1, 1);
    ASSERT_NE(bg, nullptr);
    ASSERT_NE(loaded, nullptr);
    // The host turns Java's ARGB ints back into RGBA bytes; the background turns opaque.
    const auto* bytes = static_cast<const uint8_t*>(loaded->mBuffer);
    EXPECT_EQ(std::vector<uint8_t>(bytes, bytes + 4),
              (std::vector<uint8_t>{0x11, 0x22, 0x33, 0x44}));
    bytes = static_cast<const uint8_t*>(bg->mBuffer);
    EXPECT_EQ(std::vector<uint8_t>(bytes, bytes + 8),
              (std::vector<uint8_t>{1, 2, 3, 255, 5, 6, 7, 255}));

    qam::test::writeFile(folder + "/mask.png", "not a picture");
    EXPECT_FALSE(qam::preview::loadResources(mSession, background, folder));
}

}  // namespace
