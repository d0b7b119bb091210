#include "tests/support/GLTest.h"

#include <cstdio>
#include <cstdlib>

namespace qam::test {

HeadlessContext& GLTest::gl() {
    static HeadlessContext* context = new HeadlessContext(kWidth, kHeight);  // never torn down
    return *context;
}

void GLTest::SetUp() {
    HeadlessContext& context = gl();
    if (context.width() != kWidth || context.height() != kHeight) {
        context.resize(kWidth, kHeight);
    }
    context.makeCurrent();
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glViewport(0, 0, kWidth, kHeight);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);  // GL's defaults: the code under test may change them
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

::testing::AssertionResult pixelNear(uint32_t actual, uint32_t expected, int tolerance) {
    for (int shift : {24, 16, 8, 0}) {
        if (std::abs(channel(actual, shift) - channel(expected, shift)) > tolerance) {
            char text[96];
            snprintf(text, sizeof text, "pixel 0x%08X differs from 0x%08X by more than %d", actual,
                     expected, tolerance);
            return ::testing::AssertionFailure() << text;
        }
    }
    return ::testing::AssertionSuccess();
}

}  // namespace qam::test
