#include "examples/preview/GifWriter.h"

#include <gif_lib.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "examples/preview/Shrink.h"

namespace qam::preview {
namespace {

constexpr int kLevels[3] = {6, 7, 6};  // red, green, blue: 252 colours
constexpr int kBayer[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};

ColorMapObject* palette() {
    ColorMapObject* map = GifMakeMapObject(256, nullptr);
    int index = 0;
    for (int r = 0; r < kLevels[0]; ++r) {
        for (int g = 0; g < kLevels[1]; ++g) {
            for (int b = 0; b < kLevels[2]; ++b, ++index) {
                map->Colors[index] = {static_cast<GifByteType>(r * 255 / (kLevels[0] - 1)),
                                      static_cast<GifByteType>(g * 255 / (kLevels[1] - 1)),
                                      static_cast<GifByteType>(b * 255 / (kLevels[2] - 1))};
            }
        }
    }
    for (; index < 256; ++index) {
        map->Colors[index] = {0, 0, 0};
    }
    return map;
}

GifByteType quantise(const uint8_t* rgb, int x, int y) {
    const float threshold = (kBayer[y % 4][x % 4] + 0.5f) / 16.0f - 0.5f;
    int index = 0;
    for (int c = 0; c < 3; ++c) {
        const int top = kLevels[c] - 1;
        const int level = static_cast<int>(std::lround(rgb[c] * top / 255.0f + threshold));
        index = index * kLevels[c] + std::clamp(level, 0, top);
    }
    return static_cast<GifByteType>(index);
}

}  // namespace

GifWriter::~GifWriter() {
    std::string ignored;
    close(ignored);
}

bool GifWriter::failed(const char* what, int code, std::string& error) {
    const char* reason = GifErrorString(code);
    error = mPath + ": cannot write the GIF (" + what + "): " + (reason ? reason : "unknown error");
    return false;
}

bool GifWriter::open(const std::string& path, int width, int height, double rate,
                     std::string& error) {
    mPath = path;
    mFactor = (width + kMaxWidth - 1) / kMaxWidth;
    mDelay = rate > 0.0 ? std::max(2, static_cast<int>(std::lround(100.0 / rate))) : 3;
    int code = 0;
    mGif = EGifOpenFileName(path.c_str(), false, &code);
    if (mGif == nullptr) {
        return failed("open", code, error);
    }
    EGifSetGifVersion(mGif, true);
    ColorMapObject* map = palette();
    const int status = EGifPutScreenDesc(mGif, width / mFactor, height / mFactor, 8, 0, map);
    GifFreeMapObject(map);
    // The Netscape extension: loop forever.
    static const GifByteType kLoop[3] = {1, 0, 0};
    if (status == GIF_ERROR ||
        EGifPutExtensionLeader(mGif, APPLICATION_EXT_FUNC_CODE) == GIF_ERROR ||
        EGifPutExtensionBlock(mGif, 11, "NETSCAPE2.0") == GIF_ERROR ||
        EGifPutExtensionBlock(mGif, 3, kLoop) == GIF_ERROR ||
        EGifPutExtensionTrailer(mGif) == GIF_ERROR) {
        return failed("header", mGif->Error, error);
    }
    return true;
}

bool GifWriter::add(const Image& frame, std::string& error) {
    const Image small = shrink(frame, mFactor);
    GraphicsControlBlock control = {DISPOSE_DO_NOT, false, mDelay, NO_TRANSPARENT_COLOR};
    GifByteType extension[4];
    EGifGCBToExtension(&control, extension);
    if (EGifPutExtension(mGif, GRAPHICS_EXT_FUNC_CODE, 4, extension) == GIF_ERROR ||
        EGifPutImageDesc(mGif, 0, 0, small.width, small.height, false, nullptr) == GIF_ERROR) {
        return failed("frame", mGif->Error, error);
    }
    std::vector<GifByteType> line(small.width);
    for (int y = 0; y < small.height; ++y) {
        for (int x = 0; x < small.width; ++x) {
            line[x] = quantise(&small.rgba[(static_cast<size_t>(y) * small.width + x) * 4], x, y);
        }
        if (EGifPutLine(mGif, line.data(), small.width) == GIF_ERROR) {
            return failed("frame", mGif->Error, error);
        }
    }
    return true;
}

bool GifWriter::close(std::string& error) {
    if (mGif == nullptr) {
        return true;
    }
    int code = 0;
    const bool closed = EGifCloseFile(mGif, &code) != GIF_ERROR;
    mGif = nullptr;
    return closed || failed("close", code, error);
}

}  // namespace qam::preview
