#pragma once

#include <utility>
#include <vector>

#include "examples/common/Png.h"

namespace qam::preview {

// Thumbnails of a run in rows of four, oldest first, ending with the last frame. Runs of
// any length fit: when too many thumbnails are kept, every other one is dropped and only
// every second frame is kept from then on.
class ContactSheet {
  public:
    static constexpr int kColumns = 4;
    static constexpr int kTiles = 12;
    static constexpr int kGap = 4;
    static constexpr int kMaxThumbnailWidth = 160;

    explicit ContactSheet(int frameWidth);

    void add(int frame, const Image& image);
    // The sheet so far; empty (0 x 0) before the first frame.
    Image compose() const;

  private:
    using Thumbnail = std::pair<int, Image>;

    int mFactor;
    int mStride = 1;
    std::vector<Thumbnail> mKept;
    Thumbnail mLast;
};

}  // namespace qam::preview
