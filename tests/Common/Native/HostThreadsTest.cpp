#include <cstdio>
#include <thread>

#include "tests/Common/Native/HostFixture.h"

namespace {

using vi::Host;

class HostThreadsTest : public qam::test::HostTest {};

// Java's input thread queues touches and pauses the clock while the GL thread draws.
TEST_F(HostThreadsTest, TouchesFromAnotherThreadArriveOnceAndInOrder) {
    start();
    Host::draw(mSlot);
    takeCalls();
    constexpr int kTouches = 2000;
    std::thread input([this] {
        for (int i = 0; i < kTouches; ++i) {
            Host::onTouch(mSlot, i, kHeight, 2);
            if (i % 100 == 0) {
                Host::pauseAnimation();
                Host::resumeAnimation();
            }
        }
    });
    int frames = 0;
    while (frames < 3000) {
        Host::draw(mSlot);
        ++frames;
    }
    input.join();
    Host::draw(mSlot);

    int next = 0;
    for (const std::string& call : calls()) {
        float x = 0.0f;
        if (sscanf(call.c_str(), "onTouchMove %f", &x) == 1) {
            ASSERT_NEAR(x, static_cast<float>(next) / kWidth, 1e-5f * (1 + next)) << next;
            ++next;
        }
    }
    EXPECT_EQ(next, kTouches);
}

}  // namespace
