#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "Common/Effect/Effect.h"
#include "Common/Native/Host.h"
#include "tests/effects/RecordingEffect.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace qam::test {

using Calls = std::vector<std::string>;

// Hosts the recording effect on the fixture's context through the same calls Java makes.
class HostTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        vi::Host::destroy(mSlot);  // also empties the stored parameters
        recordingEffectReset();
    }
    void TearDown() override { vi::Host::destroy(mSlot); }

    // loadEffect of `path`, the recording effect by default.
    bool load(const char* path = RECORDING_EFFECT_PATH, Calls* names = nullptr) {
        Calls ignored;
        return vi::Host::loadEffect(mSlot, path, names != nullptr ? *names : ignored);
    }
    // loadEffect of the recording effect, then init for the fixture's surface.
    void start() {
        ASSERT_TRUE(load());
        vi::Host::init(mSlot, kWidth, kHeight, false);
    }
    // The hook calls of the recording effect so far, one per element.
    static Calls calls() {
        std::istringstream all(recordingEffectCalls());
        Calls lines;
        for (std::string line; std::getline(all, line);) {
            lines.push_back(line);
        }
        return lines;
    }
    // The calls since the last reset, then a reset.
    static Calls takeCalls() {
        Calls lines = calls();
        recordingEffectReset();
        return lines;
    }

    vi::Effect* effect() { return mSlot.get(); }

    vi::HostInstance mSlot;
};

}  // namespace qam::test
