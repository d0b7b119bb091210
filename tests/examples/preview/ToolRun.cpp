#include "tests/examples/preview/ToolRun.h"

#include <gif_lib.h>
#include <sys/wait.h>

namespace qam::test {

ToolResult runTool(const std::vector<std::string>& argv, const std::string& folder) {
    static int runs = 0;
    const std::string output = folder + "/run" + std::to_string(++runs);
    std::string command;
    for (const std::string& argument : argv) {
        command += "'" + argument + "' ";
    }
    const int status = std::system((command + ">" + output + ".out 2>" + output + ".err").c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(output + ".out"),
            readFile(output + ".err")};
}

ToolResult runBuilt(const std::vector<std::string>& argv, const std::string& folder) {
    std::vector<std::string> command;
    std::istringstream emulator(TARGET_EMULATOR);  // space-separated, empty for native builds
    for (std::string word; emulator >> word;) {
        command.push_back(word);
    }
    command.insert(command.end(), argv.begin(), argv.end());
    return runTool(command, folder);
}

bool pixelIs(const Image& image, int x, int y, uint32_t rgba, int tolerance) {
    const uint8_t* p = &image.rgba[(static_cast<size_t>(y) * image.width + x) * 4];
    for (int c = 0; c < 4; ++c) {
        if (std::abs(p[c] - int(rgba >> (24 - 8 * c) & 0xFF)) > tolerance) {
            return false;
        }
    }
    return true;
}

GifSummary readGif(const std::string& path) {
    GifSummary summary;
    int error = 0;
    GifFileType* gif = DGifOpenFileName(path.c_str(), &error);
    if (gif != nullptr && DGifSlurp(gif) == GIF_OK && gif->ImageCount > 0) {
        const SavedImage& first = gif->SavedImages[0];
        const ColorMapObject* map =
            first.ImageDesc.ColorMap ? first.ImageDesc.ColorMap : gif->SColorMap;
        const GifColorType c = map->Colors[first.RasterBits[0]];
        summary = {gif->SWidth, gif->SHeight, gif->ImageCount,
                   uint32_t(c.Red) << 16 | uint32_t(c.Green) << 8 | c.Blue};
    }
    DGifCloseFile(gif, &error);
    return summary;
}

}  // namespace qam::test
