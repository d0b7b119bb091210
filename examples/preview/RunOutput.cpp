#include "examples/preview/RunOutput.h"

#include <utility>

#include "examples/preview/NumberedFiles.h"

namespace qam::preview {

RunOutput::RunOutput(std::string folder, int width, int height)
    : mFolder(std::move(folder)), mWidth(width), mHeight(height), mSheet(width) {}

bool RunOutput::open(double rate, std::string& error) {
    return framesFolder(mFolder, "output", error) &&
           mGif.open(gifPath(), mWidth, mHeight, rate, error);
}

std::string RunOutput::framePath(int frame) const {
    return mFolder + "/" + numberedName("frame", frame);
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
