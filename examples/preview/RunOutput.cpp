#include "examples/preview/RunOutput.h"

#include <cstdio>
#include <filesystem>
#include <regex>
#include <system_error>

namespace qam::preview {

namespace fs = std::filesystem;

RunOutput::RunOutput(std::string folder, int width, int height)
    : mFolder(std::move(folder)), mWidth(width), mHeight(height), mSheet(width) {}

bool RunOutput::open(double rate, std::string& error) {
    std::error_code failure;
    fs::create_directories(mFolder, failure);
    if (failure) {
        error = mFolder + ": cannot create the output folder: " + failure.message();
        return false;
    }
    static const std::regex kFrame("frame-[0-9]+\\.png");
    for (const fs::directory_entry& entry : fs::directory_iterator(mFolder, failure)) {
        if (std::regex_match(entry.path().filename().string(), kFrame)) {
            fs::remove(entry.path(), failure);
        }
    }
    return mGif.open(gifPath(), mWidth, mHeight, rate, error);
}

std::string RunOutput::framePath(int frame) const {
    char name[32];
    snprintf(name, sizeof name, "/frame-%04d.png", frame);
    return mFolder + name;
}

bool RunOutput::add(int frame, const Image& image, std::string& error) {
    if (!writePng(framePath(frame), image)) {
        error = framePath(frame) + ": cannot write the frame";
        return false;
    }
    mSheet.add(frame, image);
    ++mFrames;
    return mGif.add(image, error);
}

bool RunOutput::finish(std::string& error) {
    if (mFrames > 0 && !writePng(sheetPath(), mSheet.compose())) {
        error = sheetPath() + ": cannot write the contact sheet";
        return false;
    }
    return mGif.close(error);
}

}  // namespace qam::preview
