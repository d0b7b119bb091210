#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "examples/common/Png.h"

namespace qam::test {

inline std::string readFile(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

inline void writeFile(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

// A folder below the build's test work folder named after the running test, emptied.
inline std::string freshFolder() {
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    const std::string folder =
        std::string(TEST_WORK_DIR) + "/" + test->test_suite_name() + "." + test->name();
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    return folder;
}

struct ToolResult {
    int status = -1;  // the exit status, -1 when it didn't exit
    std::string out;
    std::string err;
};

// Runs `argv` (argv[0] a path, no argument holding a single quote) and waits for it; its
// output goes to files in `folder`.
ToolResult runTool(const std::vector<std::string>& argv, const std::string& folder);
// runTool for a program this build made: through the target's emulator in a cross build.
ToolResult runBuilt(const std::vector<std::string>& argv, const std::string& folder);

// The pixel at (x, y) from the top left of `image` is `rgba` (0xRRGGBBAA), within `tolerance`
// in every channel.
bool pixelIs(const Image& image, int x, int y, uint32_t rgba, int tolerance = 1);

// A GIF file as giflib decodes it; all 0 when it can't.
struct GifSummary {
    int width = 0, height = 0, frames = 0;
    uint32_t firstPixel = 0;  // 0xRRGGBB, of the first frame
};
GifSummary readGif(const std::string& path);

}  // namespace qam::test
