#include "Kinetra/Core/KNInterpolator.h"

#include <cmath>

#include "tests/Kinetra/Core/CoreTestSupport.h"

namespace {

using namespace Kinetra;

// Each curve's segments as start, control and end; the segments are 1/n wide.
struct Curve {
    const char* name;
    float (*get)(float);
    Floats table;
};
const Curve kCurves[] = {
    {"QuintOut50", QuintOut50::getInterpolation, {0, 0.502f, 0.742f, 0.742f, 1.082f, 1}},
    {"QuintOut80", QuintOut80::getInterpolation, {0.04f, 0.718f, 0.84f, 0.845f, 0.998f, 1}},
    {"SineIn33", SineIn33::getInterpolation, {0, 0.001f, 0.32f, 0.32f, 0.59f, 1}},
    {"SineInOut33", SineInOut33::getInterpolation, {0, 0.05f, 0.495f, 0.495f, 0.94f, 1}},
    {"SineInOut50", SineInOut50::getInterpolation, {0, 0.05f, 0.628f, 0.61f, 0.999f, 1}},
    {"SineInOut60",
     SineInOut60::getInterpolation,
     {0, 0.01f, 0.37f, 0.37f, 0.72f, 0.888f, 0.888f, 0.9999f, 1}},
    {"SineInOut70",
     SineInOut70::getInterpolation,
     {0, 0.01f, 0.45f, 0.45f, 0.8f, 0.908f, 0.908f, 0.9999f, 1}},
    {"SineInOut80",
     SineInOut80::getInterpolation,
     {0, 0, 0.195f, 0.195f, 0.48f, 0.645f, 0.645f, 0.835f, 0.885f, 0.885f, 0.955f, 0.978f, 0.978f,
      0.9999f, 1}},
    {"SineInOut90",
     SineInOut90::getInterpolation,
     {0, 0, 0.247f, 0.247f, 0.48f, 0.72f, 0.7f, 0.835f, 0.905f, 0.91f, 0.955f, 0.978f, 0.978f,
      0.9999f, 1}},
    {"SinOut33", SinOut33::getInterpolation, {0, 0.386f, 0.645f, 0.645f, 0.962f, 1}},
};

// Each segment starts exactly at its start value (at float widths 0.5, 0x3EAAAAAB, 0.2) and
// passes a quarter-half-quarter blend of its points halfway; the curve ends at 1.
TEST(KNInterpolator, EverySegmentIsAParabolaThroughItsTable) {
    for (const Curve& curve : kCurves) {
        const int n = static_cast<int>(curve.table.size()) / 3;
        const float width = n == 2 ? 0.5f : n == 3 ? 0.33333334f : 0.2f;
        for (int k = 0; k < n; ++k) {
            SCOPED_TRACE(::testing::Message() << curve.name << " segment " << k);
            const float* p = &curve.table[3 * k];
            EXPECT_EQ(curve.get(static_cast<float>(k) * width), p[0]);
            EXPECT_NEAR(curve.get((static_cast<float>(k) + 0.5f) * width),
                        0.25f * p[0] + 0.5f * p[1] + 0.25f * p[2], 2e-7f);
        }
        EXPECT_FLOAT_EQ(curve.get(1.0f), 1.0f) << curve.name;
    }
}

TEST(KNInterpolator, WorkedValuesJumpsAndProgressOutsideTheRange) {
    EXPECT_EQ(SineInOut80::getInterpolation(0.1f), 0.195f * 0.25f);  // i = 0, u = 0.5
    // u = 0.9 in QuintOut50's second segment: 0.01 * 0.742 + 0.18 * 1.082 + 0.81 = 1.01218.
    EXPECT_NEAR(QuintOut50::getInterpolation(0.95f), 1.01218f, 1e-6f);
    // Past 1 the last parabola goes on: u = 2 in SinOut33's second segment gives
    // 0.645 + (2 * 0.355 + 2 * 0.317 * -1) * 2 = 0.797.
    EXPECT_NEAR(SinOut33::getInterpolation(1.5f), 0.797f, 1e-6f);
    EXPECT_NEAR(SineInOut50::getInterpolation(0.4999f), 0.628f, 1e-3f);
    EXPECT_NEAR(SineInOut90::getInterpolation(0.3999f), 0.72f, 1e-3f);
    EXPECT_NEAR(SineInOut90::getInterpolation(0.5999f), 0.905f, 1e-3f);
    // Below zero or NaN: taken as zero, logged once per curve (curves run every frame). A huge
    // progress does not overflow the index.
    LogCapture log;
    EXPECT_EQ(QuintOut80::getInterpolation(-0.25f), 0.04f);
    EXPECT_EQ(QuintOut80::getInterpolation(-0.5f), 0.04f);
    EXPECT_EQ(SineInOut90::getInterpolation(-3.0f), 0.0f);
    EXPECT_EQ(SineInOut60::getInterpolation(NAN), 0.0f);
    SineInOut80::getInterpolation(1e30f);
    EXPECT_EQ(log.messages().size(), 3u);
}

}  // namespace
