#pragma once

#include <string>
#include <vector>

#include "Common/Effect/Effect.h"
#include "Common/Native/Host.h"
#include "tests/effects/RecordingEffect.h"
#include "tests/support/GLTest.h"

namespace qam::test {

// Hosts the recording effect on the fixture's context through the same calls Java makes.
class HostTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        vi::Host::destroy(mSlot);  // also empties the stored parameters
        recordingEffectReset();
    }
    void TearDown() override { vi::Host::destroy(mSlot); }

    // loadEffect of the recording effect, then init for the fixture's surface.
    void start(vi::EffectSlot& slot) {
        std::vector<std::string> names;
        ASSERT_TRUE(vi::Host::loadEffect(slot, RECORDING_EFFECT_PATH, names));
        vi::Host::init(slot, kWidth, kHeight, false);
    }
    void start() { start(mSlot); }

    static std::vector<std::string> calls() {
        std::vector<std::string> lines;
        std::string all = recordingEffectCalls();
        size_t begin = 0;
        for (size_t end; (end = all.find('\n', begin)) != std::string::npos; begin = end + 1) {
            lines.push_back(all.substr(begin, end - begin));
        }
        return lines;
    }
    // The calls since the last reset, then a reset.
    static std::vector<std::string> takeCalls() {
        std::vector<std::string> lines = calls();
        recordingEffectReset();
        return lines;
    }

    vi::Effect* effect() { return mSlot.get(); }

    vi::HostInstance mSlot;
};

}  // namespace qam::test
