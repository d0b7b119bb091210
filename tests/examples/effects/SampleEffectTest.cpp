#include "tests/examples/effects/SampleEffectTest.h"

#include <GLES2/gl2.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <thread>

namespace qam::test {
namespace {

Image picture(Backdrop backdrop, int width, int height) {
    const bool paper = backdrop == Backdrop::kPaper;
    Image image;
    image.width = width;
    image.height = height;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int r = 24 * x / width;
            const int g = 24 * y / height;
            const int b = 24 * (x + y) / (width + height);
            image.rgba.insert(image.rgba.end(),
                              {static_cast<uint8_t>((paper ? 216 : 30) + r),
                               static_cast<uint8_t>((paper ? 208 : 36) + g),
                               static_cast<uint8_t>((paper ? 192 : 70) + b), 255});
        }
    }
    return image;
}

}  // namespace

std::array<int, 4> Frame::at(int x, int y) const {
    const uint8_t* p = &rgba[(static_cast<size_t>(y) * width + x) * 4];
    return {p[0], p[1], p[2], p[3]};
}

void SampleEffectTest::SetUp() {
    GLTest::SetUp();
    gl().resize(kScreenWidth, kScreenHeight);
    glViewport(0, 0, kScreenWidth, kScreenHeight);
    mLog = std::make_unique<LogCapture>();
    mSession = std::make_unique<preview::Session>();
    std::string error;
    ASSERT_TRUE(mSession->loadEffect(mLibrary, error)) << error;
    ASSERT_EQ(mSession->resourceNames(), std::vector<std::string>{"bg"});
    mSession->init(kScreenWidth, kScreenHeight);
    mBackground = picture(mBackdrop, kScreenWidth, kScreenHeight);
    mSession->loadTexture("bg", mBackground);
}

void SampleEffectTest::TearDown() {
    mSession.reset();
    mLog.reset();
}

bool SampleEffectTest::step() {
    return mSession->draw();
}

Frame SampleEffectTest::frames(int count) {
    for (int i = 0; i < count; ++i) {
        step();
    }
    return screen();
}

std::vector<Frame> SampleEffectTest::runOut(int pause) {
    std::vector<Frame> drawn;
    for (int i = 0; i < kFrameLimit; ++i) {
        const bool more = step();
        drawn.push_back(screen());
        if (!more) {
            return drawn;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(pause));
    }
    ADD_FAILURE() << "the effect still wants frames after " << kFrameLimit;
    return drawn;
}

Frame SampleEffectTest::screen() const {
    return {mWidth, mHeight, gl().readPixels(0, 0, mWidth, mHeight)};
}

void SampleEffectTest::resize(int width, int height) {
    mWidth = width;
    mHeight = height;
    gl().resize(width, height);
    mSession->init(width, height);
}

void SampleEffectTest::touch(int x, int y, int action) {
    // Java passes touches from the top left.
    mSession->touch(x, mHeight - y, action);
}

std::array<int, 4> SampleEffectTest::background(int x, int y) const {
    const uint8_t* p =
        &mBackground.rgba[(static_cast<size_t>(kScreenHeight - 1 - y) * kScreenWidth + x) * 4];
    return {p[0], p[1], p[2], p[3]};
}

int SampleEffectTest::offBackground(const Frame& frame, int x, int y) const {
    const std::array<int, 4> seen = frame.at(x, y);
    const std::array<int, 4> expected = background(x, y);
    int largest = 0;
    for (int c = 0; c < 4; ++c) {
        largest = std::max(largest, std::abs(seen[c] - expected[c]));
    }
    return largest;
}

int SampleEffectTest::paintedPixels(const Frame& frame, int threshold) const {
    int count = 0;
    for (int y = 0; y < frame.height; ++y) {
        for (int x = 0; x < frame.width; ++x) {
            count += offBackground(frame, x, y) > threshold ? 1 : 0;
        }
    }
    return count;
}

::testing::AssertionResult SampleEffectTest::quietLog() {
    const std::vector<std::string> messages = mLog->messages();
    if (messages.empty()) {
        return ::testing::AssertionSuccess();
    }
    auto failure = ::testing::AssertionFailure() << messages.size() << " log lines, the first: ";
    return failure << messages.front();
}

}  // namespace qam::test
