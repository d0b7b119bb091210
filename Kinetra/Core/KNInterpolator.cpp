#include "Kinetra/Core/KNInterpolator.h"

#include "Common/Platform/Log.h"

namespace Kinetra {

namespace {

// Segment widths as the floats the curves were tuned with (1/3 is 0x3EAAAAAB).
constexpr float kWidth2 = 0.5f;
constexpr float kWidth3 = 0.33333334f;
constexpr float kWidth5 = 0.2f;

// `table` holds start, control and end of each of the n segments.
template <int n>
float evaluate(const float (&table)[3 * n], float width, float t) {
    if (!(t >= 0.0f)) {
        // A negative segment would read outside the table. Said once per curve: curves are
        // evaluated every frame.
        qam::logErrorOnce(table, "Kinetra interpolator: progress %f is not at least 0, taken as 0",
                          static_cast<double>(t));
        t = 0.0f;
    }
    const float scaled = n == 2 ? t + t : t * n;
    // Non-negative here, so truncation is the floor; compared as a float first so that a huge
    // t cannot overflow the conversion.
    const int i = scaled >= static_cast<float>(n - 1) ? n - 1 : static_cast<int>(scaled);
    const float u = (t - static_cast<float>(i) * width) * static_cast<float>(n);
    const float p0 = table[3 * i];
    const float p1 = table[3 * i + 1];
    const float p2 = table[3 * i + 2];
    return p0 + (u * (p2 - p0) + 2.0f * (p1 - p0) * (1.0f - u)) * u;
}

}  // namespace

float QuintOut50::getInterpolation(float t) {
    static constexpr float table[] = {0.0f, 0.502f, 0.742f, 0.742f, 1.082f, 1.0f};
    return evaluate<2>(table, kWidth2, t);
}

float QuintOut80::getInterpolation(float t) {
    static constexpr float table[] = {0.04f, 0.718f, 0.84f, 0.845f, 0.998f, 1.0f};
    return evaluate<2>(table, kWidth2, t);
}

float SineIn33::getInterpolation(float t) {
    static constexpr float table[] = {0.0f, 0.001f, 0.32f, 0.32f, 0.59f, 1.0f};
    return evaluate<2>(table, kWidth2, t);
}

float SineInOut33::getInterpolation(float t) {
    static constexpr float table[] = {0.0f, 0.05f, 0.495f, 0.495f, 0.94f, 1.0f};
    return evaluate<2>(table, kWidth2, t);
}

float SineInOut50::getInterpolation(float t) {
    static constexpr float table[] = {0.0f, 0.05f, 0.628f, 0.61f, 0.999f, 1.0f};
    return evaluate<2>(table, kWidth2, t);
}

float SineInOut60::getInterpolation(float t) {
    static constexpr float table[] = {0.0f,   0.01f,  0.37f,   0.37f, 0.72f,
                                      0.888f, 0.888f, 0.9999f, 1.0f};
    return evaluate<3>(table, kWidth3, t);
}

float SineInOut70::getInterpolation(float t) {
    static constexpr float table[] = {0.0f,   0.01f,  0.45f,   0.45f, 0.8f,
                                      0.908f, 0.908f, 0.9999f, 1.0f};
    return evaluate<3>(table, kWidth3, t);
}

float SineInOut80::getInterpolation(float t) {
    static constexpr float table[] = {0.0f,   0.0f,   0.195f, 0.195f,  0.48f,
                                      0.645f, 0.645f, 0.835f, 0.885f,  0.885f,
                                      0.955f, 0.978f, 0.978f, 0.9999f, 1.0f};
    return evaluate<5>(table, kWidth5, t);
}

float SineInOut90::getInterpolation(float t) {
    static constexpr float table[] = {0.0f,   0.0f,  0.247f, 0.247f, 0.48f,  0.72f,   0.7f, 0.835f,
                                      0.905f, 0.91f, 0.955f, 0.978f, 0.978f, 0.9999f, 1.0f};
    return evaluate<5>(table, kWidth5, t);
}

float SinOut33::getInterpolation(float t) {
    static constexpr float table[] = {0.0f, 0.386f, 0.645f, 0.645f, 0.962f, 1.0f};
    return evaluate<2>(table, kWidth2, t);
}

}  // namespace Kinetra
