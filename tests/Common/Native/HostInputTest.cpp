#include "tests/Common/Native/HostFixture.h"
#include "tests/support/LogCapture.h"

namespace {

using vi::Host;
using Calls = std::vector<std::string>;

class HostInputTest : public qam::test::HostTest {
  protected:
    void SetUp() override {
        HostTest::SetUp();
        start();
        Host::draw(mSlot);
        takeCalls();
    }
    // Delivers what is queued; the calls it made, without the frame's own "draw".
    Calls deliver() {
        Host::draw(mSlot);
        Calls all = takeCalls();
        all.pop_back();
        return all;
    }
};

TEST_F(HostInputTest, TouchesAreNormalisedWithTheOriginBottomLeft) {
    Host::onTouch(mSlot, 0, kHeight, 0);
    Host::onTouch(mSlot, kWidth, 0, 2);
    Host::onTouch(mSlot, 16, 48, 1);
    EXPECT_EQ(deliver(), (Calls{"onTouchDown 0 0", "onTouchMove 1 1", "onTouchUp 0.25 0.25"}));
}

TEST_F(HostInputTest, EachActionReachesItsPointerAndPhase) {
    for (int action = 0; action < 9; ++action) {
        Host::onTouch(mSlot, 32, 32, action);
    }
    EXPECT_EQ(deliver(), (Calls{"onTouchDown 0.5 0.5", "onTouchUp 0.5 0.5", "onTouchMove 0.5 0.5",
                                "onSecondTouchDown 0.5 0.5", "onSecondTouchUp 0.5 0.5",
                                "onSecondTouchMove 0.5 0.5", "onThirdTouchDown 0.5 0.5",
                                "onThirdTouchUp 0.5 0.5", "onThirdTouchMove 0.5 0.5"}));
}

TEST_F(HostInputTest, UnknownActionsQueueNothing) {
    qam::test::LogCapture log;
    Host::onTouch(mSlot, 1, 1, 9);
    Host::onTouch(mSlot, 1, 1, -1);
    EXPECT_TRUE(effect()->mEvents.empty());
    EXPECT_EQ(log.messages(),
              (Calls{"onTouch: unknown action 9 ignored", "onTouch: unknown action -1 ignored"}));
}

TEST_F(HostInputTest, MovesFollowOnlyAPressedPointer) {
    Host::onTouch(mSlot, 16, 48, 0);  // down at (0.25, 0.25)
    Host::onTouch(mSlot, 32, 32, 2);  // move while pressed
    deliver();
    EXPECT_EQ(effect()->mTouchStart, glm::vec2(0.25f, 0.25f));
    EXPECT_EQ(effect()->mTouchCurrent, glm::vec2(0.5f, 0.5f));
    EXPECT_TRUE(effect()->mIsTouched);

    Host::onTouch(mSlot, 48, 16, 1);  // up at (0.75, 0.75)
    Host::onTouch(mSlot, 0, 64, 2);   // move while released: hook only
    EXPECT_EQ(deliver(), (Calls{"onTouchUp 0.75 0.75", "onTouchMove 0 0"}));
    EXPECT_EQ(effect()->mTouchCurrent, glm::vec2(0.75f, 0.75f));
    EXPECT_FALSE(effect()->mIsTouched);
}

TEST_F(HostInputTest, ClearReleasesEveryPointerAtItsLastPosition) {
    Host::onTouch(mSlot, 16, 48, 0);
    Host::onTouch(mSlot, 48, 16, 3);
    deliver();
    Host::clear(mSlot);
    EXPECT_EQ(deliver(), (Calls{"onTouchUp 0.25 0.25", "onSecondTouchUp 0.75 0.75",
                                "onThirdTouchUp 0 0", "onClear"}));
    EXPECT_FALSE(effect()->mIsTouched || effect()->mIsSecondTouched);
}

TEST_F(HostInputTest, AffordanceClearsThenShowsAndUnlockShows) {
    Host::showAffordance(mSlot, 32, 16);
    Host::showUnlock(mSlot);
    EXPECT_EQ(deliver(), (Calls{"onTouchUp 0 0", "onSecondTouchUp 0 0", "onThirdTouchUp 0 0",
                                "onClear", "onShowAffordance 0.5 0.75", "onShowUnlock"}));
}

TEST_F(HostInputTest, RepeatedKeysQueueEveryPairAndKeepTheLastValue) {
    const int keys[] = {5, 5};
    const float values[] = {1.0f, 2.0f};
    Host::setParameters(mSlot, keys, values, 2);
    EXPECT_EQ(deliver(), (Calls{"setParameter 5 1", "setParameter 5 2"}));
    Host::init(mSlot, kWidth, kHeight, false);
    EXPECT_EQ(deliver(), (Calls{"initLandscape", "setParameter 5 2"}));
}

}  // namespace
