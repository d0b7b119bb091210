#include "examples/preview/ContactSheet.h"

#include <algorithm>
#include <cstring>

#include "examples/preview/Shrink.h"

namespace qam::preview {

ContactSheet::ContactSheet(int frameWidth)
    : mFactor((frameWidth + kMaxThumbnailWidth - 1) / kMaxThumbnailWidth) {
    mLast.first = -1;
}

void ContactSheet::add(int frame, const Image& image) {
    mLast = {frame, shrink(image, mFactor)};
    if (frame % mStride != 0) {
        return;
    }
    mKept.push_back(mLast);
    if (mKept.size() > 2 * kTiles) {
        for (size_t i = 1; 2 * i < mKept.size(); ++i) {
            mKept[i] = std::move(mKept[2 * i]);
        }
        mKept.resize((mKept.size() + 1) / 2);
        mStride *= 2;
    }
}

Image ContactSheet::compose() const {
    if (mLast.first < 0) {
        return Image();
    }
    // Evenly spread over what was kept, then the last frame when it isn't already there.
    std::vector<const Thumbnail*> tiles;
    const bool lastKept = mKept.back().first == mLast.first;
    const size_t spread = std::min(mKept.size(), static_cast<size_t>(kTiles - (lastKept ? 0 : 1)));
    for (size_t i = 0; i < spread; ++i) {
        const size_t pick =
            spread > 1 ? (i * (mKept.size() - 1) + (spread - 1) / 2) / (spread - 1) : 0;
        tiles.push_back(&mKept[pick]);
    }
    if (!lastKept) {
        tiles.push_back(&mLast);
    }

    const int tileWidth = mLast.second.width;
    const int tileHeight = mLast.second.height;
    const int columns = std::min(kColumns, static_cast<int>(tiles.size()));
    const int rows = (static_cast<int>(tiles.size()) + columns - 1) / columns;
    Image sheet;
    sheet.width = columns * tileWidth + (columns + 1) * kGap;
    sheet.height = rows * tileHeight + (rows + 1) * kGap;
    sheet.rgba.assign(static_cast<size_t>(sheet.width) * sheet.height * 4, 0);
    for (size_t p = 3; p < sheet.rgba.size(); p += 4) {
        sheet.rgba[p - 3] = sheet.rgba[p - 2] = sheet.rgba[p - 1] = 24;
        sheet.rgba[p] = 255;
    }
    for (size_t t = 0; t < tiles.size(); ++t) {
        const Image& tile = tiles[t]->second;
        const int left = kGap + static_cast<int>(t % columns) * (tileWidth + kGap);
        const int top = kGap + static_cast<int>(t / columns) * (tileHeight + kGap);
        for (int y = 0; y < tileHeight; ++y) {
            memcpy(&sheet.rgba[(static_cast<size_t>(top + y) * sheet.width + left) * 4],
                   &tile.rgba[static_cast<size_t>(y) * tileWidth * 4],
                   static_cast<size_t>(tileWidth) * 4);
        }
    }
    return sheet;
}

}  // namespace qam::preview
