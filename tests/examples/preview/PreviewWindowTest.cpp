// qam-preview --window, run by ctest under xvfb-run.
#include <gtest/gtest.h>

#include "tests/examples/preview/ToolRun.h"

namespace {

using qam::test::runBuilt;

TEST(PreviewWindowTest, DrawsTheScriptedFramesIntoAnXWindowAndStopsByItselfOrSaysItCannot) {
    const std::string display = getenv("DISPLAY") != nullptr ? getenv("DISPLAY") : "";
    ASSERT_FALSE(display.empty()) << "run me with xvfb-run -a";
    const std::string folder = qam::test::freshFolder();
    qam::test::writeFile(folder + "/run.txt",
                         "0 param 0 0\n0 param 1 0.4\n0 param 2 1\n0 param 3 1\n"
                         "1 touch down 10 10\n2 touch up 10 10\n3 param 0 1\n");
    const qam::test::ToolResult run = runBuilt(
        {QAM_PREVIEW, RECORDING_EFFECT_PATH, "--window", "--frames", "5", "--size", "64x48",
         "--script", folder + "/run.txt", "--out", folder + "/out", "--rate", "60"},
        folder);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("frames per second (5 frames"), std::string::npos) << run.out;
    // Read back from the window's own surface before each swap.
    for (auto [frame, colour] : {std::pair{0, 0x0066FFFFu}, {2, 0x0066FFFFu}, {4, 0xFF66FFFFu}}) {
        qam::Image image;
        ASSERT_TRUE(
            qam::readPng(folder + "/out/frame-000" + std::to_string(frame) + ".png", image));
        EXPECT_TRUE(qam::test::pixelIs(image, 40, 30, colour)) << frame;
    }
    EXPECT_FALSE(std::filesystem::exists(folder + "/out/frame-0005.png"));

    unsetenv("DISPLAY");
    const qam::test::ToolResult headless =
        runBuilt({QAM_PREVIEW, RECORDING_EFFECT_PATH, "--window", "--frames", "1"}, folder);
    setenv("DISPLAY", display.c_str(), 1);
    EXPECT_EQ(headless.status, 1);
    EXPECT_NE(headless.err.find("--window: cannot open the X display"), std::string::npos)
        << headless.err;
}

}  // namespace
