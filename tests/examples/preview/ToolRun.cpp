#include "tests/examples/preview/ToolRun.h"

#include <fcntl.h>
#include <gif_lib.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

extern char** environ;

namespace qam::test {

namespace fs = std::filesystem;

namespace {

std::string testFolderName() {
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    return std::string(TEST_WORK_DIR) + "/" + test->test_suite_name() + "." + test->name();
}

}  // namespace

ToolResult runTool(const std::vector<std::string>& argv) {
    static int runs = 0;
    const std::string folder = testFolderName() + ".run" + std::to_string(++runs);
    fs::remove_all(folder);
    fs::create_directories(folder);
    const std::string outPath = folder + "/stdout";
    const std::string errPath = folder + "/stderr";
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    std::vector<char*> args;
    for (const std::string& a : argv) {
        args.push_back(const_cast<char*>(a.c_str()));
    }
    args.push_back(nullptr);
    ToolResult result;
    pid_t pid = 0;
    if (posix_spawn(&pid, args[0], &actions, nullptr, args.data(), environ) == 0) {
        int status = 0;
        waitpid(pid, &status, 0);
        result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    result.out = readFile(outPath);
    result.err = readFile(errPath);
    return result;
}

std::string freshFolder() {
    const std::string folder = testFolderName();
    fs::remove_all(folder);
    fs::create_directories(folder);
    return folder;
}

void writeFile(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

bool fileExists(const std::string& path) {
    return fs::exists(path);
}

uint32_t pixelAt(const Image& image, int x, int y) {
    const uint8_t* p = &image.rgba[(static_cast<size_t>(y) * image.width + x) * 4];
    return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];
}

GifSummary readGif(const std::string& path) {
    GifSummary summary;
    int error = 0;
    GifFileType* gif = DGifOpenFileName(path.c_str(), &error);
    if (gif == nullptr) {
        return summary;
    }
    if (DGifSlurp(gif) == GIF_OK && gif->ImageCount > 0) {
        summary.readable = true;
        summary.width = gif->SWidth;
        summary.height = gif->SHeight;
        summary.frames = gif->ImageCount;
        const SavedImage& first = gif->SavedImages[0];
        const ColorMapObject* map =
            first.ImageDesc.ColorMap ? first.ImageDesc.ColorMap : gif->SColorMap;
        const GifColorType c = map->Colors[first.RasterBits[0]];
        summary.firstPixel = uint32_t(c.Red) << 16 | uint32_t(c.Green) << 8 | c.Blue;
    }
    DGifCloseFile(gif, &error);
    return summary;
}

}  // namespace qam::test
