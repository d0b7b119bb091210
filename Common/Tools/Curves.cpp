#include "Common/Tools/Curves.h"

#include <cmath>

#include "Common/Platform/Log.h"

namespace vi {
namespace {

// Whether a control point's input level keeps its segment inside the table; NaN is not.
bool isLevel(float x) {
    return x >= 0.0f && x < float(Curves::kLevels);
}

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
    delete mTexture;  // a second call replaces the texture instead of leaking it
    mTexture = new Texture(mTable, 1, kLevels, false, true, false, true, false, 4, false);
}

void Curves::calculateChannel(const glm::vec2* points, int count, CHANNELS channel) {
    if (count < 2) {
        return;
    }
    if (points == nullptr) {
        qam::logError("Curves: no points for %d control points of channel %d, channel kept", count,
                      channel);
        return;
    }
    for (int k = 1; k < count; ++k) {
        const glm::vec2 from = points[k - 1];
        const glm::vec2 to = points[k];
        if (!isLevel(from.x) || !isLevel(to.x)) {
            qam::logError("Curves: segment %g..%g of channel %d is outside 0..255, skipped", from.x,
                          to.x, channel);
            continue;
        }
        // The segment's own end points serve as the outer control points.
        calculateCatmullRomPoint(int(from.x), int(to.x + 1.0f), from, from, to, to, channel);
    }
}

void Curves::calculateCatmullRomPoint(int start, int end, glm::vec2 p0, glm::vec2 p1, glm::vec2 p2,
                                      glm::vec2 p3, CHANNELS channel) {
    if (start < 0 || end > kLevels || channel < RED || channel > BLUE) {
        qam::logError("Curves: entries %d..%d of channel %d are outside the table, skipped", start,
                      end, channel);
        return;
    }
    // A one-entry segment divides by zero: t is not a number and the entry becomes 255.
    const float step = 1.0f / float(end - start - 1);
    for (int x = start; x < end; ++x) {
        const float t = float(x - start) * step;
        const float y = 0.5f * (2.0f * p1.y + (-p0.y + p2.y) * t +
                                (2.0f * p0.y - 5.0f * p1.y + 4.0f * p2.y - p3.y) * t * t +
                                (-p0.y + 3.0f * p1.y - 3.0f * p2.y + p3.y) * t * t * t);
        mTable[x][channel] = toByte(y);
    }
}

}  // namespace vi
