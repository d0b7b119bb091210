#pragma once

#include <string>
#include <vector>

#include "examples/common/Png.h"

namespace qam::test {

// What a finished program left behind.
struct ToolResult {
    int status = -1;  // exit status, or -1 when it didn't exit normally
    std::string out;
    std::string err;
};

// Runs `argv` (argv[0] a path) with stdout and stderr captured, and waits for it.
ToolResult runTool(const std::vector<std::string>& argv);

// A fresh empty folder below the build's test work folder, named after the running test.
std::string freshFolder();

void writeFile(const std::string& path, const std::string& text);
std::string readFile(const std::string& path);
bool fileExists(const std::string& path);

// The pixel at (x, y) from the top left of `image` as 0xRRGGBBAA.
uint32_t pixelAt(const Image& image, int x, int y);

// Frames, size and the first pixel of the first frame of a GIF file, as giflib decodes it.
struct GifSummary {
    bool readable = false;
    int width = 0;
    int height = 0;
    int frames = 0;
    uint32_t firstPixel = 0;  // 0xRRGGBB
};
GifSummary readGif(const std::string& path);

}  // namespace qam::test
