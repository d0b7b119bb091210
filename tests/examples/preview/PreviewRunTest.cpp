// qam-preview as a user runs it, on the recording test effect, which fills the screen with
// the colour of parameters 0 to 3.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include "tests/examples/preview/ToolRun.h"

namespace {

using qam::test::pixelIs;
using qam::test::readGif;
using qam::test::runBuilt;
using qam::test::ToolResult;
namespace fs = std::filesystem;

class PreviewRunTest : public ::testing::Test {
  protected:
    // qam-preview with `arguments` after the effect, writing into <folder>/out.
    ToolResult preview(const std::string& effect, std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {QAM_PREVIEW, effect, "--out", mOut, "--rate", "0"});
        return runBuilt(arguments, mFolder);
    }

    const std::string mFolder = qam::test::freshFolder();
    const std::string mOut = mFolder + "/out";
};

TEST_F(PreviewRunTest,
       WritesEveryFrameAContactSheetAndAGifOverTheBackgroundAndReportsTheFrameRate) {
    fs::create_directories(mOut);
    qam::test::writeFile(mOut + "/frame-0042.png", "from an earlier, longer run");
    qam::test::writeFile(mOut + "/notes.txt", "kept");
    qam::test::writeFile(mFolder + "/run.txt",
                         "# orange, opaque\n0 param 0 1\n0 param 1 0.5\n0 param 2 0\n"
                         "0 param 3 1\n2 touch down 10 10\n3 touch move 20 20\n5 unlock\n");
    ASSERT_TRUE(qam::writePng(mFolder + "/bg.png", {3, 2, std::vector<uint8_t>(24, 200)}));
    ToolResult run =
        preview(RECORDING_EFFECT_PATH, {"--frames", "10", "--size", "64x48", "--bg",
                                        mFolder + "/bg.png", "--script", mFolder + "/run.txt"});
    ASSERT_EQ(run.status, 0) << run.err;
    // The recording effect lists "noise" and "mask", which its folder doesn't have.
    EXPECT_NE(run.err.find("resource \"noise\" not loaded"), std::string::npos) << run.err;
    for (int f = 0; f < 10; ++f) {
        const std::string name = mOut + "/frame-000" + std::to_string(f) + ".png";
        qam::Image frame;
        ASSERT_TRUE(qam::readPng(name, frame)) << name;
        ASSERT_EQ(std::pair(frame.width, frame.height), std::pair(64, 48)) << name;
        for (auto [x, y] : {std::pair{0, 0}, {63, 47}, {31, 20}}) {
            EXPECT_TRUE(pixelIs(frame, x, y, 0xFF8000FFu)) << name;
        }
    }
    EXPECT_FALSE(fs::exists(mOut + "/frame-0010.png") || fs::exists(mOut + "/frame-0042.png"));
    EXPECT_TRUE(fs::exists(mOut + "/notes.txt"));

    qam::Image sheet;  // ten tiles in rows of four, 4 pixels apart
    ASSERT_TRUE(qam::readPng(mOut + "/contact-sheet.png", sheet));
    EXPECT_EQ(std::pair(sheet.width, sheet.height), std::pair(4 * 64 + 5 * 4, 3 * 48 + 4 * 4));
    EXPECT_TRUE(pixelIs(sheet, 4 + 10, 4 + 10, 0xFF8000FFu) && pixelIs(sheet, 0, 0, 0x181818FFu));

    const qam::test::GifSummary gif = readGif(mOut + "/preview.gif");
    EXPECT_EQ(gif.frames, 10);
    EXPECT_EQ(std::pair(gif.width, gif.height), std::pair(64, 48));
    EXPECT_EQ(gif.firstPixel, 0xFF7F00u);  // orange on the 6 x 7 x 6 palette

    EXPECT_TRUE(
        std::regex_search(run.out, std::regex("[1-9][0-9.]* frames per second \\(10 frames")))
        << run.out;
    for (const std::string& path :
         {mOut + "/frame-0000.png ... " + mOut + "/frame-0009.png", mOut + "/preview.gif"}) {
        EXPECT_NE(run.out.find(path), std::string::npos) << run.out;
    }

    run = preview(RECORDING_EFFECT_PATH, {"--size", "32x32"});  // the default swipe: 60 frames
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(readGif(mOut + "/preview.gif").frames, 60);
}

TEST_F(PreviewRunTest, BrokenInputFailsWithOneClearMessageAndNoPictures) {
    qam::test::writeFile(mFolder + "/broken.so", "not a library");
    qam::test::writeFile(mFolder + "/broken.png", "not a picture");
    qam::test::writeFile(mFolder + "/run.txt", "0 param 0 1\n\n1 touch press 5 5\n");
    const struct {
        std::string effect;
        std::vector<std::string> arguments;
        int status;
        std::string message;
    } cases[] = {
        {mFolder + "/missing.so", {}, 1, mFolder + "/missing.so: no such effect library"},
        {mFolder + "/broken.so", {}, 1, mFolder + "/broken.so: not a loadable library: "},
        {HOST_LIBRARY_PATH, {}, 1, "not an effect library: it exports no \"createScene\""},
        {RECORDING_EFFECT_PATH,
         {"--bg", mFolder + "/broken.png"},
         1,
         mFolder + "/broken.png: not a readable PNG"},
        {RECORDING_EFFECT_PATH,
         {"--script", mFolder + "/run.txt"},
         1,
         mFolder + "/run.txt:3: expected down, move or up after \"touch\", got \"press\""},
        {RECORDING_EFFECT_PATH, {"--size", "0x5"}, 2, "--size needs a size WxH such as 360x640"},
    };
    for (const auto& c : cases) {
        const ToolResult run = preview(c.effect, c.arguments);
        EXPECT_EQ(run.status, c.status) << c.message << "\n" << run.err;
        EXPECT_NE(run.err.find(c.message), std::string::npos) << run.err;
        EXPECT_FALSE(fs::exists(mOut + "/frame-0000.png")) << c.message;
    }
}

// The counts come from the GL calls of the library and the effect, which draws one quad a
// frame; golden frames of orange fail against a pink run, frame by frame.
TEST_F(PreviewRunTest, CountsTheFramesGlWorkAndComparesWithGoldenFrames) {
    qam::test::writeFile(mFolder + "/orange.txt", "0 param 0 1\n0 param 1 0.5\n0 param 3 1\n");
    qam::test::writeFile(mFolder + "/pink.txt", "0 param 0 1\n0 param 2 1\n0 param 3 1\n");
    const std::vector<std::string> run = {"--frames", "4", "--size", "32x16", "--rate", "60"};
    auto with = [&](std::vector<std::string> more) {
        more.insert(more.begin(), run.begin(), run.end());
        return preview(RECORDING_EFFECT_PATH, more);
    };
    ToolResult result = with({"--stats", "--script", mFolder + "/orange.txt", "--record",
                              mFolder + "/golden", "--keep", "1,3"});
    ASSERT_EQ(result.status, 0) << result.err;
    const std::string stats = qam::test::readFile(mOut + "/stats.json");
    for (const char* expected : {"\"frames\": 4", "\"fullScreenPasses\": 4}",
                                 "\"total\": {\"drawCalls\": 4, \"vertices\": 16, "
                                 "\"programSwitches\": 1,"}) {
        EXPECT_NE(stats.find(expected), std::string::npos) << expected << "\n" << stats;
    }
    EXPECT_TRUE(std::regex_search(result.out, std::regex("drawCalls +0 +4 ")));
    EXPECT_EQ(fs::exists(mFolder + "/golden/frame-0001.png"),
              !fs::exists(mFolder + "/golden/frame-0000.png"));

    result = with({"--script", mFolder + "/orange.txt", "--compare", mFolder + "/golden"});
    EXPECT_EQ(result.status, 0) << result.err;
    result = with({"--script", mFolder + "/pink.txt", "--compare", mFolder + "/golden"});
    EXPECT_EQ(result.status, 1);
    for (const std::string frame : {"1", "3"}) {
        EXPECT_NE(result.err.find("frame " + frame + ": 512 of 512 pixels"), std::string::npos)
            << result.err;
        EXPECT_TRUE(fs::exists(mOut + "/diff-000" + frame + ".png"));
    }
}

}  // namespace
