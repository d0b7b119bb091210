#pragma once

#include <string>

#include "examples/common/Png.h"

struct GifFileType;

namespace qam::preview {

// An animated GIF written frame by frame, looping forever. Frames wider than
// kMaxWidth are shrunk; colours go through one fixed 6 x 7 x 6 palette with ordered
// dithering, so nothing has to be held back until the end.
class GifWriter {
  public:
    static constexpr int kMaxWidth = 320;

    GifWriter() = default;
    ~GifWriter();
    GifWriter(const GifWriter&) = delete;
    GifWriter& operator=(const GifWriter&) = delete;

    // Frames of `width` x `height`, shown for 1 / `rate` s each (0: as in a 30 Hz run).
    bool open(const std::string& path, int width, int height, double rate, std::string& error);
    bool add(const Image& frame, std::string& error);
    bool close(std::string& error);

  private:
    bool failed(const char* what, int code, std::string& error);

    GifFileType* mGif = nullptr;
    std::string mPath;
    int mFactor = 1;
    int mDelay = 3;
};

}  // namespace qam::preview
