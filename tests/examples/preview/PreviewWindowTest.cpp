// qam-preview --window, run by ctest under xvfb-run.
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <thread>

#include "tests/examples/preview/ToolRun.h"

namespace {

using qam::test::readFile;
using qam::test::runBuilt;

// Waits up to a minute for `ready`; false when it never is.
template <typename Condition>
bool await(Condition ready) {
    for (int tries = 0; tries < 600 && !ready(); ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return ready();
}

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

// A broken build leaves the running effect alone; a good one replaces it in the open window,
// and the script goes on with the new effect, which starts from its defaults (black).
TEST(PreviewWindowTest, ReloadsTheEffectWhenItsLibraryIsRebuilt) {
    const std::string folder = qam::test::freshFolder();
    const std::string effect = folder + "/effect.so", out = folder + "/out";
    std::filesystem::create_directories(folder + "/assets");
    std::filesystem::copy_file(RECORDING_EFFECT_PATH, effect);
    qam::test::writeFile(folder + "/run.txt",
                         "0 param 1 0.4\n0 param 2 1\n3 param 0 1\n299 param 2 1\n");
    auto run = std::async(std::launch::async, [&] {
        return runBuilt(
            {QAM_PREVIEW, effect, "--window", "--frames", "300", "--size", "64x48", "--script",
             folder + "/run.txt", "--assets", folder + "/assets", "--out", out, "--rate", "60"},
            folder);
    });
    auto said = [&](const std::string& stream, const std::string& text) {  // so far
        for (const auto& file : std::filesystem::directory_iterator(folder)) {
            if (file.path().extension() == stream &&
                readFile(file.path()).find(text) != std::string::npos) {
                return true;
            }
        }
        return false;
    };
    ASSERT_TRUE(await([&] { return std::filesystem::exists(out + "/frame-0010.png"); }));
    qam::test::writeFile(effect, "a build cut short");
    ASSERT_TRUE(await([&] { return said(".err", "not reloaded, the running effect stays"); }));
    std::filesystem::copy_file(RECORDING_EFFECT_PATH, effect,
                               std::filesystem::copy_options::overwrite_existing);
    ASSERT_TRUE(await([&] { return said(".out", "reloaded " + effect); }));
    const qam::test::ToolResult result = run.get();
    ASSERT_EQ(result.status, 0) << result.err;
    int frame = 0;
    ASSERT_EQ(
        sscanf(result.out.substr(result.out.find(" at frame ")).c_str(), " at frame %d", &frame),
        1);
    ASSERT_LT(frame, 299);
    for (auto [at, colour] :
         {std::pair{frame - 1, 0xFF66FFFFu}, {frame, 0x000000FFu}, {299, 0x0000FFFFu}}) {
        qam::Image image;
        char name[32];
        snprintf(name, sizeof name, "/frame-%04d.png", at);
        ASSERT_TRUE(qam::readPng(out + name, image));
        EXPECT_TRUE(qam::test::pixelIs(image, 40, 30, colour)) << at;
    }
}

}  // namespace
