#include "examples/preview/GoldenFrames.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <regex>
#include <system_error>
#include <utility>

#include "examples/preview/NumberedFiles.h"

namespace qam::preview {

namespace fs = std::filesystem;

namespace {

// The largest difference of one channel of two RGBA pixels.
inline int pixelDifference(const uint8_t* a, const uint8_t* b) {
    int largest = 0;
    for (int c = 0; c < 4; ++c) {
        largest = std::max(largest, std::abs(a[c] - b[c]));
    }
    return largest;
}

// The drawn frame in grey at a third of its brightness, with every pixel that differs in
// magenta: bright enough to stand out even for a small difference, brighter for a larger one.
Image diffPicture(const Image& golden, const Image& drawn, int channel) {
    Image picture = drawn;
    for (size_t i = 0; i < picture.rgba.size(); i += 4) {
        uint8_t* p = &picture.rgba[i];
        const int off = pixelDifference(&golden.rgba[i], &drawn.rgba[i]);
        if (off > channel) {
            p[0] = p[2] = static_cast<uint8_t>(128 + off * 127 / 255);
            p[1] = 0;
        } else {
            p[0] = p[1] = p[2] = static_cast<uint8_t>((p[0] + p[1] + p[2]) / 9);
        }
        p[3] = 255;
    }
    return picture;
}

}  // namespace

GoldenFrames::GoldenFrames(Mode mode, std::string folder, std::string outFolder,
                           std::vector<int> keep, GoldenTolerance tolerance)
    : mMode(mode),
      mFolder(std::move(folder)),
      mOutFolder(std::move(outFolder)),
      mFrames(keep.begin(), keep.end()),
      mTolerance(tolerance) {}

std::string GoldenFrames::goldenPath(int frame) const {
    return mFolder + "/" + numberedName("frame", frame);
}

std::string GoldenFrames::diffPath(int frame) const {
    return mOutFolder + "/" + numberedName("diff", frame);
}

bool GoldenFrames::open(std::string& error) {
    removeNumbered(mOutFolder, "diff");
    if (mMode == Mode::Compare) {
        return listGoldenFrames(error);
    }
    return framesFolder(mFolder, "golden", error);
}

bool GoldenFrames::listGoldenFrames(std::string& error) {
    for (int frame : mFrames) {
        if (!fs::is_regular_file(goldenPath(frame))) {
            error = goldenPath(frame) + ": no such golden frame";
            return false;
        }
    }
    if (!mFrames.empty()) {
        return true;
    }
    static const std::regex kGolden("frame-([0-9]{4,7})\\.png");
    std::error_code failure;
    for (const fs::directory_entry& entry : fs::directory_iterator(mFolder, failure)) {
        const std::string name = entry.path().filename().string();
        std::smatch number;
        // Only names the run would give, so that the file read later is this one.
        if (std::regex_match(name, number, kGolden) &&
            numberedName("frame", std::stoi(number[1])) == name) {
            mFrames.insert(std::stoi(number[1]));
        }
    }
    if (failure) {
        error = mFolder + ": cannot read the golden folder: " + failure.message();
        return false;
    }
    if (mFrames.empty()) {
        error = mFolder + ": no golden frames (frame-NNNN.png) in the folder";
        return false;
    }
    return true;
}

bool GoldenFrames::wants(int frame) const {
    return (mMode == Mode::Record && mFrames.empty()) || mFrames.count(frame) > 0;
}

bool GoldenFrames::add(int frame, const Image& image, std::string& error) {
    mLastDrawn = std::max(mLastDrawn, frame);
    if (!wants(frame)) {
        return true;
    }
    if (mMode == Mode::Compare) {
        return compare(frame, image, error);
    }
    if (!writePng(goldenPath(frame), image)) {
        error = goldenPath(frame) + ": cannot write the golden frame";
        return false;
    }
    return true;
}

bool GoldenFrames::compare(int frame, const Image& image, std::string& error) {
    Image golden;
    if (!readPng(goldenPath(frame), golden)) {
        error = goldenPath(frame) + ": cannot read the golden frame";
        return false;
    }
    const std::string which = "frame " + std::to_string(frame) + ": ";
    if (golden.width != image.width || golden.height != image.height) {
        mFailures[frame] = which + "drawn " + std::to_string(image.width) + "x" +
                           std::to_string(image.height) + ", but " + goldenPath(frame) + " is " +
                           std::to_string(golden.width) + "x" + std::to_string(golden.height);
        return true;
    }
    const size_t pixels = image.rgba.size() / 4;
    size_t differing = 0;
    int largest = 0;
    for (size_t i = 0; i < image.rgba.size(); i += 4) {
        const int off = pixelDifference(&golden.rgba[i], &image.rgba[i]);
        differing += off > mTolerance.channel;
        largest = std::max(largest, off);
    }
    if (differing <= mTolerance.share * pixels) {
        return true;
    }
    std::error_code failure;
    fs::create_directories(mOutFolder, failure);
    if (!writePng(diffPath(frame), diffPicture(golden, image, mTolerance.channel))) {
        error = diffPath(frame) + ": cannot write the difference picture";
        return false;
    }
    char counts[160];
    snprintf(counts, sizeof counts,
             "%zu of %zu pixels (%.2f %%, over the %g %% allowed) differ by more than %d (up to "
             "%d) from ",
             differing, pixels, 100.0 * differing / pixels, 100.0 * mTolerance.share,
             mTolerance.channel, largest);
    mFailures[frame] = which + counts + goldenPath(frame) + "; see " + diffPath(frame);
    return true;
}

std::vector<std::string> GoldenFrames::failures() const {
    std::vector<std::string> lines;
    for (const auto& [frame, line] : mFailures) {
        lines.push_back(line);
    }
    const std::string ended = mLastDrawn < 0
                                  ? "the run drew no frames"
                                  : "the run ended after frame " + std::to_string(mLastDrawn);
    for (auto frame = mFrames.upper_bound(mLastDrawn); frame != mFrames.end(); ++frame) {
        lines.push_back("frame " + std::to_string(*frame) + ": not drawn: " + ended);
    }
    return lines;
}

}  // namespace qam::preview
