#include "Kinetra/Core/KNInterpolator.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "tests/support/LogCapture.h"

namespace {

using namespace Kinetra;

struct Curve {
    const char* name;
    float (*get)(float);
    int segments;
    std::vector<float> table;  // start, control, end of each segment
};

const std::vector<Curve>& curves() {
    static const std::vector<Curve> all = {
        {"QuintOut50", QuintOut50::getInterpolation, 2, {0, 0.502f, 0.742f, 0.742f, 1.082f, 1}},
        {"QuintOut80", QuintOut80::getInterpolation, 2, {0.04f, 0.718f, 0.84f, 0.845f, 0.998f, 1}},
        {"SineIn33", SineIn33::getInterpolation, 2, {0, 0.001f, 0.32f, 0.32f, 0.59f, 1}},
        {"SineInOut33", SineInOut33::getInterpolation, 2, {0, 0.05f, 0.495f, 0.495f, 0.94f, 1}},
        {"SineInOut50", SineInOut50::getInterpolation, 2, {0, 0.05f, 0.628f, 0.61f, 0.999f, 1}},
        {"SineInOut60",
         SineInOut60::getInterpolation,
         3,
         {0, 0.01f, 0.37f, 0.37f, 0.72f, 0.888f, 0.888f, 0.9999f, 1}},
        {"SineInOut70",
         SineInOut70::getInterpolation,
         3,
         {0, 0.01f, 0.45f, 0.45f, 0.8f, 0.908f, 0.908f, 0.9999f, 1}},
        {"SineInOut80",
         SineInOut80::getInterpolation,
         5,
         {0, 0, 0.195f, 0.195f, 0.48f, 0.645f, 0.645f, 0.835f, 0.885f, 0.885f, 0.955f, 0.978f,
          0.978f, 0.9999f, 1}},
        {"SineInOut90",
         SineInOut90::getInterpolation,
         5,
         {0, 0, 0.247f, 0.247f, 0.48f, 0.72f, 0.7f, 0.835f, 0.905f, 0.91f, 0.955f, 0.978f, 0.978f,
          0.9999f, 1}},
        {"SinOut33", SinOut33::getInterpolation, 2, {0, 0.386f, 0.645f, 0.645f, 0.962f, 1}},
    };
    return all;
}

// The segment widths as floats: 0.5, 0x3EAAAAAB, 0.2.
float width(int segments) {
    return segments == 2 ? 0.5f : segments == 3 ? 0.33333334f : 0.2f;
}

TEST(KNInterpolator, EverySegmentStartsExactlyAtItsTableValue) {
    for (const Curve& curve : curves()) {
        for (int k = 0; k < curve.segments; ++k) {
            const float t = static_cast<float>(k) * width(curve.segments);
            EXPECT_EQ(curve.get(t), curve.table[3 * k]) << curve.name << " segment " << k;
        }
    }
}

TEST(KNInterpolator, MidSegmentIsAQuarterHalfQuarterBlend) {
    for (const Curve& curve : curves()) {
        for (int k = 0; k < curve.segments; ++k) {
            const float t = (static_cast<float>(k) + 0.5f) * width(curve.segments);
            const float* p = &curve.table[3 * k];
            EXPECT_NEAR(curve.get(t), 0.25f * p[0] + 0.5f * p[1] + 0.25f * p[2], 2e-7f)
                << curve.name << " segment " << k;
        }
    }
}

TEST(KNInterpolator, EndsAndWorkedValues) {
    for (const Curve& curve : curves()) {
        EXPECT_FLOAT_EQ(curve.get(1.0f), 1.0f) << curve.name;
    }
    EXPECT_EQ(QuintOut50::getInterpolation(0), 0.0f);
    EXPECT_EQ(QuintOut50::getInterpolation(0.5f), 0.742f);
    EXPECT_EQ(QuintOut50::getInterpolation(1), 1.0f);
    EXPECT_EQ(QuintOut80::getInterpolation(0), 0.04f);
    EXPECT_EQ(SineInOut60::getInterpolation(1), 1.0f);
    // i = 0, u = 0.5: a quarter of 0.195.
    EXPECT_EQ(SineInOut80::getInterpolation(0.1f), 0.195f * 0.25f);
    // u = 0.9 in QuintOut50's second segment: 0.01 * 0.742 + 0.18 * 1.082 + 0.81 = 1.01218.
    EXPECT_NEAR(QuintOut50::getInterpolation(0.95f), 1.01218f, 1e-6f);
    // Past 1 the last parabola goes on: u = 2 in SinOut33's second segment gives
    // 0.645 + (2 * 0.355 + 2 * 0.317 * -1) * 2 = 0.797.
    EXPECT_NEAR(SinOut33::getInterpolation(1.5f), 0.797f, 1e-6f);
}

TEST(KNInterpolator, JumpsBetweenSegmentsAreKept) {
    EXPECT_EQ(SineInOut50::getInterpolation(0.5f), 0.61f);
    EXPECT_NEAR(SineInOut50::getInterpolation(0.4999f), 0.628f, 1e-3f);
    EXPECT_GT(SineInOut50::getInterpolation(0.4999f), 0.62f);
    EXPECT_EQ(SineInOut90::getInterpolation(0.4f), 0.7f);
    EXPECT_NEAR(SineInOut90::getInterpolation(0.3999f), 0.72f, 1e-3f);
    EXPECT_EQ(SineInOut90::getInterpolation(0.6f), 0.91f);
    EXPECT_NEAR(SineInOut90::getInterpolation(0.5999f), 0.905f, 1e-3f);
}

TEST(KNInterpolator, ProgressBelowZeroIsLoggedAndTakenAsZero) {
    qam::test::LogCapture log;
    EXPECT_EQ(QuintOut80::getInterpolation(-0.25f), 0.04f);
    EXPECT_EQ(SineInOut90::getInterpolation(-3.0f), 0.0f);
    EXPECT_EQ(SineInOut60::getInterpolation(std::numeric_limits<float>::quiet_NaN()), 0.0f);
    EXPECT_EQ(log.messages().size(), 3u);
    // A huge progress stays in the last segment without overflowing the segment index.
    SineInOut80::getInterpolation(1e30f);
    EXPECT_EQ(log.messages().size(), 3u);
}

}  // namespace
