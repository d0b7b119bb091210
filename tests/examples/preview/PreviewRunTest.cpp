// qam-preview as a user runs it, on the recording test effect, which fills the screen with
// the colour of parameters 0 to 3.
#include <gtest/gtest.h>

#include <regex>

#include "tests/examples/preview/ToolRun.h"

namespace {

using qam::test::fileExists;
using qam::test::runTool;
using qam::test::ToolResult;

const char* const kColourScript =
    "# orange, opaque\n"
    "0 param 0 1\n0 param 1 0.5\n0 param 2 0\n0 param 3 1\n"
    "2 touch down 10 10\n3 touch move 20 20\n4 touch up 20 20\n5 unlock\n6 clear\n";

class PreviewRunTest : public ::testing::Test {
  protected:
    void SetUp() override { mFolder = qam::test::freshFolder(); }

    // qam-preview with `arguments` after the effect, writing into <folder>/out.
    ToolResult preview(const std::string& effect, std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {QAM_PREVIEW, effect, "--out", out(), "--rate", "0"});
        return runTool(arguments);
    }
    std::string out() const { return mFolder + "/out"; }
    std::string script(const std::string& text) {
        qam::test::writeFile(mFolder + "/run.txt", text);
        return mFolder + "/run.txt";
    }

    std::string mFolder;
};

TEST_F(PreviewRunTest, WritesEveryFrameAContactSheetAndAGifAndReportsTheFrameRate) {
    qam::test::writeFile(mFolder + "/stale", "");
    ASSERT_EQ(runTool({"/bin/mkdir", "-p", out()}).status, 0);
    qam::test::writeFile(out() + "/frame-0042.png", "from an earlier, longer run");
    qam::test::writeFile(out() + "/notes.txt", "kept");

    const ToolResult run = preview(RECORDING_EFFECT_PATH, {"--frames", "10", "--size", "64x48",
                                                           "--script", script(kColourScript)});
    ASSERT_EQ(run.status, 0) << run.err;

    for (int f = 0; f < 10; ++f) {
        char name[32];
        snprintf(name, sizeof name, "/frame-%04d.png", f);
        qam::Image frame;
        ASSERT_TRUE(qam::readPng(out() + name, frame)) << name;
        ASSERT_EQ(frame.width, 64);
        ASSERT_EQ(frame.height, 48);
        for (auto [x, y] : {std::pair{0, 0}, {63, 47}, {31, 20}}) {
            const uint32_t p = qam::test::pixelAt(frame, x, y);
            EXPECT_EQ(p & 0xFF00FFFF, 0xFF0000FFu) << name;
            EXPECT_NEAR(static_cast<int>(p >> 16 & 0xFF), 128, 1) << name;
        }
    }
    EXPECT_FALSE(fileExists(out() + "/frame-0010.png"));
    EXPECT_FALSE(fileExists(out() + "/frame-0042.png"));
    EXPECT_TRUE(fileExists(out() + "/notes.txt"));

    qam::Image sheet;
    ASSERT_TRUE(qam::readPng(out() + "/contact-sheet.png", sheet));
    EXPECT_EQ(sheet.width, 4 * 64 + 5 * 4);
    EXPECT_EQ(sheet.height, 3 * 48 + 4 * 4);
    EXPECT_EQ(qam::test::pixelAt(sheet, 4 + 10, 4 + 10) & 0xFF00FFFF, 0xFF0000FFu);

    EXPECT_EQ(qam::test::readFile(out() + "/preview.gif").substr(0, 6), "GIF89a");
    const qam::test::GifSummary gif = qam::test::readGif(out() + "/preview.gif");
    ASSERT_TRUE(gif.readable);
    EXPECT_EQ(gif.frames, 10);
    EXPECT_EQ(gif.width, 64);
    EXPECT_EQ(gif.height, 48);
    EXPECT_EQ(gif.firstPixel, 0xFF7F00u);  // orange on the 6 x 7 x 6 palette

    std::smatch fps;
    ASSERT_TRUE(std::regex_search(run.out, fps,
                                  std::regex("([0-9]+\\.[0-9]) frames per second \\(10 frames")))
        << run.out;
    EXPECT_GT(std::stod(fps[1]), 0.0);
    EXPECT_NE(run.out.find(out() + "/frame-0000.png ... " + out() + "/frame-0009.png"),
              std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find(out() + "/preview.gif"), std::string::npos);
}

TEST_F(PreviewRunTest, WithoutAScriptTheDefaultSwipeRunsForSixtyFramesOverTheGivenBackground) {
    qam::Image background{3, 2, std::vector<uint8_t>(24, 200)};
    ASSERT_TRUE(qam::writePng(mFolder + "/bg.png", background));
    const ToolResult run =
        preview(RECORDING_EFFECT_PATH, {"--size", "32x32", "--bg", mFolder + "/bg.png"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(fileExists(out() + "/frame-0059.png"));
    EXPECT_FALSE(fileExists(out() + "/frame-0060.png"));
    EXPECT_EQ(qam::test::readGif(out() + "/preview.gif").frames, 60);
    // The recording effect lists "noise" and "mask", which its folder doesn't have.
    EXPECT_NE(run.err.find("resource \"noise\" not loaded"), std::string::npos) << run.err;
}

TEST_F(PreviewRunTest, BrokenInputFailsWithOneClearMessageAndNoPictures) {
    qam::test::writeFile(mFolder + "/broken.so", "not a library");
    qam::test::writeFile(mFolder + "/broken.png", "not a picture");
    const std::string badScript = script("0 param 0 1\n\n1 touch press 5 5\n");
    const struct {
        std::string effect;
        std::vector<std::string> arguments;
        int status;
        std::string message;
    } cases[] = {
        {mFolder + "/missing.so", {}, 1, mFolder + "/missing.so: no such effect library"},
        {mFolder + "/broken.so", {}, 1, mFolder + "/broken.so: not a loadable library: "},
        {HOST_LIBRARY_PATH, {}, 1, "not an effect library: it exports no \"createScene\""},
        {NULL_EFFECT_PATH, {}, 1, "its \"createScene\" made no effect"},
        {RECORDING_EFFECT_PATH,
         {"--bg", mFolder + "/broken.png"},
         1,
         mFolder + "/broken.png: not a readable PNG"},
        {RECORDING_EFFECT_PATH,
         {"--bg", mFolder + "/none.png"},
         1,
         mFolder + "/none.png: not a readable PNG"},
        {RECORDING_EFFECT_PATH,
         {"--script", badScript},
         1,
         badScript + ":3: expected down, move or up after \"touch\", got \"press\""},
        {RECORDING_EFFECT_PATH,
         {"--script", mFolder + "/none.txt"},
         1,
         mFolder + "/none.txt: cannot read the script: No such file or directory"},
        {RECORDING_EFFECT_PATH, {"--size", "0x5"}, 2, "--size needs a size WxH such as 360x640"},
        {RECORDING_EFFECT_PATH, {"--fast"}, 2, "unknown option --fast"},
    };
    for (const auto& c : cases) {
        const ToolResult run = preview(c.effect, c.arguments);
        EXPECT_EQ(run.status, c.status) << c.message << "\n" << run.err;
        EXPECT_NE(run.err.find(c.message), std::string::npos) << run.err;
        EXPECT_FALSE(fileExists(out() + "/frame-0000.png")) << c.message;
    }
}

}  // namespace
