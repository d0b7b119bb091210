// qam-preview --window, run by ctest under xvfb-run.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/examples/preview/ToolRun.h"

namespace {

using qam::test::runTool;

TEST(PreviewWindowTest, DrawsTheScriptedFramesIntoAnXWindowAndStopsByItself) {
    ASSERT_NE(getenv("DISPLAY"), nullptr) << "run me with xvfb-run -a";
    const std::string folder = qam::test::freshFolder();
    qam::test::writeFile(folder + "/run.txt",
                         "0 param 0 0\n0 param 1 0.4\n0 param 2 1\n0 param 3 1\n"
                         "1 touch down 10 10\n2 touch up 10 10\n3 param 0 1\n");
    const qam::test::ToolResult run =
        runTool({QAM_PREVIEW, RECORDING_EFFECT_PATH, "--window", "--frames", "5", "--size", "64x48",
                 "--script", folder + "/run.txt", "--out", folder + "/out", "--rate", "60"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("frames per second (5 frames"), std::string::npos) << run.out;

    // Read back from the window's own surface before each swap.
    for (auto [name, colour] : {std::pair{"frame-0000.png", 0x0066FFFFu},
                                {"frame-0002.png", 0x0066FFFFu},
                                {"frame-0004.png", 0xFF66FFFFu}}) {
        qam::Image frame;
        ASSERT_TRUE(qam::readPng(folder + "/out/" + name, frame)) << name;
        ASSERT_EQ(frame.width, 64);
        const uint32_t p = qam::test::pixelAt(frame, 40, 30);
        EXPECT_EQ(p & 0xFF00FFFF, colour & 0xFF00FFFF) << name;
        EXPECT_NEAR(static_cast<int>(p >> 16 & 0xFF), 0x66, 1) << name;
    }
    EXPECT_FALSE(qam::test::fileExists(folder + "/out/frame-0005.png"));
}

TEST(PreviewWindowTest, WithoutADisplayItSaysSoAndFails) {
    const std::string display = getenv("DISPLAY") ? getenv("DISPLAY") : "";
    unsetenv("DISPLAY");
    const qam::test::ToolResult run =
        runTool({QAM_PREVIEW, RECORDING_EFFECT_PATH, "--window", "--frames", "1"});
    if (!display.empty()) {
        setenv("DISPLAY", display.c_str(), 1);
    }
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("--window: cannot open the X display"), std::string::npos) << run.err;
}

}  // namespace
