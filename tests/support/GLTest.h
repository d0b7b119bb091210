#pragma once

#include <GLES2/gl2.h>
#include <gtest/gtest.h>

#include <cstdint>

#include "Common/Platform/HeadlessContext.h"

namespace qam::test {

// One headless GLES2 context per test executable, current on the test thread. Each test
// starts with a 64 x 64 pbuffer, the default framebuffer bound and a black clear.
class GLTest : public ::testing::Test {
  protected:
    static constexpr int kWidth = 64;
    static constexpr int kHeight = 64;

    // The context is current before members of derived fixtures are built.
    GLTest() { gl().makeCurrent(); }
    void SetUp() override;

    static HeadlessContext& gl();
    // The pixel at (x, y) of the bound framebuffer as 0xRRGGBBAA.
    static uint32_t pixel(int x, int y) { return gl().readPixel(x, y); }
    // Simulates a lost EGL context: a fresh context replaces the current one.
    static void loseContext() { gl().replaceContext(); }
};

// Channel `shift` (24 red, 16 green, 8 blue, 0 alpha) of a 0xRRGGBBAA pixel.
inline int channel(uint32_t rgba, int shift) {
    return static_cast<int>((rgba >> shift) & 0xFF);
}

// Compares two 0xRRGGBBAA pixels channel by channel within `tolerance`.
::testing::AssertionResult pixelNear(uint32_t actual, uint32_t expected, int tolerance);

}  // namespace qam::test

#define EXPECT_PIXEL_NEAR(actual, expected, tolerance) \
    EXPECT_TRUE(::qam::test::pixelNear((actual), (expected), (tolerance)))
