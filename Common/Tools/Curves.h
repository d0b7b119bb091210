#pragma once

#include <glm/vec2.hpp>

#include "Common/Platform/Export.h"
#include "Common/Renderer/Base/Texture.h"

namespace vi {

// Three tone curves (red, green, blue) baked into a 1 x 256 RGBA lookup texture that a
// shader samples to remap each channel. Control points are (input, output) levels in
// 0..255, sorted by input.
class TALVEQAM_EXPORT Curves {
  public:
    // The byte of a table entry that a channel's curve writes.
    enum CHANNELS { RED = 0, GREEN = 1, BLUE = 2 };

    static constexpr int kLevels = 256;

    Curves(const glm::vec2* red, int redCount, const glm::vec2* green, int greenCount,
           const glm::vec2* blue, int blueCount);
    ~Curves();
    Curves(const Curves&) = delete;
    Curves& operator=(const Curves&) = delete;

    // Fills the table from the three curves (a curve of fewer than two points leaves its
    // channel as it is) and makes a new texture over it. The previous texture is not
    // deleted: a renderer may still hold it, and it goes with the effect's texture list.
    void calculateCatmullRomPoints(const glm::vec2* red, int redCount, const glm::vec2* green,
                                   int greenCount, const glm::vec2* blue, int blueCount);
    // Fills entries start..end-1 of `channel` with one Catmull-Rom segment.
    void calculateCatmullRomPoint(int start, int end, glm::vec2 p0, glm::vec2 p1, glm::vec2 p2,
                                  glm::vec2 p3, CHANNELS channel);
    // Not static: the table is uploaded again on every bind, so later edits show.
    Texture* getTexture();

  private:
    void calculateChannel(const glm::vec2* points, int count, CHANNELS channel);

    Texture* mTexture;
    unsigned char mTable[kLevels][4];  // R, G, B, A per input level
};

}  // namespace vi
