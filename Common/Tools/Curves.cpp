#include "Common/Tools/Curves.h"

#include <cmath>

#include "Common/Platform/Log.h"
#include "Common/Platform/Truncation.h"

namespace vi {
namespace {

unsigned char toByte(float y) {
    if (y > 255.0f || std::isnan(y)) {
        return 255;
    }
    if (y < 0.0f) {
        return 0;
    }
    return static_cast<unsigned char>(y);
}

}  // namespace

Curves::Curves(const glm::vec2* red, int redCount, const glm::vec2* green, int greenCount,
               const glm::vec2* blue, int blueCount)
    : mTexture(nullptr), mTable{} {
    calculateCatmullRomPoints(red, redCount, green, greenCount, blue, blueCount);
}

Curves::~Curves() {
    qam::forgetLoggedOnce(this);
    delete mTexture;
}

Texture* Curves::getTexture() {
    return mTexture;
}

void Curves::calculateCatmullRomPoints(const glm::vec2* red, int redCount, const glm::vec2* green,
                                       int greenCount, const glm::vec2* blue, int blueCount) {
    calculateChannel(red, redCount, RED);
    calculateChannel(green, greenCount, GREEN);
    calculateChannel(blue, blueCount, BLUE);
    // A renderer may still bind the previous texture: it stays in the effect's list.
    mTexture = new Texture(mTable, 1, kLevels, false, true, false, true, false, 4, false);
}

void Curves::calculateChannel(const glm::vec2* points, int count, CHANNELS channel) {
    if (count < 2) {
        return;
    }
    if (points == nullptr) {
        qam::logErrorOnce(this,
                          "Curves: no points for %d control points of channel %d, channel kept",
                          count, channel);
        return;
    }
    for (int k = 1; k < count; ++k) {
        const glm::vec2 from = points[k - 1];
        const glm::vec2 to = points[k];
        if (!qam::truncatesToInt(from.x) || !qam::truncatesToInt(to.x + 1.0f)) {
            qam::logErrorOnce(this, "Curves: segment %g..%g of channel %d has no levels, skipped",
                              from.x, to.x, channel);
            continue;
        }
        // The segment's own end points serve as the outer control points.
        calculateCatmullRomPoint(int(from.x), int(to.x + 1.0f), from, from, to, to, channel);
    }
}

void Curves::calculateCatmullRomPoint(int start, int end, glm::vec2 p0, glm::vec2 p1, glm::vec2 p2,
                                      glm::vec2 p3, CHANNELS channel) {
    // An empty range writes nothing; any other must stay inside the table and the entry.
    if (start < end &&
        (start < 0 || end > kLevels || static_cast<unsigned>(channel) >= sizeof mTable[0])) {
        qam::logErrorOnce(this,
                          "Curves: entries %d..%d of channel %d are outside the table, skipped",
                          start, end, channel);
        return;
    }
    for (int x = start; x < end; ++x) {
        // Divided per entry, so the last one has t = 1 exactly. A one-entry segment divides
        // 0 by 0: t is not a number and the entry becomes 255.
        const float t = float(x - start) / float(end - start - 1);
        const float y = 0.5f * (2.0f * p1.y + (-p0.y + p2.y) * t +
                                (2.0f * p0.y - 5.0f * p1.y + 4.0f * p2.y - p3.y) * (t * t) +
                                (-p0.y + 3.0f * p1.y - 3.0f * p2.y + p3.y) * (t * t * t));
        mTable[x][channel] = toByte(y);
    }
}

}  // namespace vi
