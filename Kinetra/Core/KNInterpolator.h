#pragma once

#include "Common/Platform/Export.h"

// Easing curves for animating layers: each maps progress t in [0, 1] to an eased value along a
// piecewise quadratic Bézier curve over equal time segments. The tables are data, kept with
// their irregularities (overshoot, a start above 0, jumps between segments). t above 1
// extrapolates the last segment; t below 0 is logged and treated as 0.
namespace Kinetra {

class TALVEQAM_EXPORT QuintOut50 {
  public:
    static float getInterpolation(float t);
};

class TALVEQAM_EXPORT QuintOut80 {
  public:
    static float getInterpolation(float t);
};

class TALVEQAM_EXPORT SineIn33 {
  public:
    static float getInterpolation(float t);
};

class TALVEQAM_EXPORT SineInOut33 {
  public:
    static float getInterpolation(float t);
};

class TALVEQAM_EXPORT SineInOut50 {
  public:
    static float getInterpolation(float t);
};

class TALVEQAM_EXPORT SineInOut60 {
  public:
    static float getInterpolation(float t);
};

class TALVEQAM_EXPORT SineInOut70 {
  public:
    static float getInterpolation(float t);
};

class TALVEQAM_EXPORT SineInOut80 {
  public:
    static float getInterpolation(float t);
};

class TALVEQAM_EXPORT SineInOut90 {
  public:
    static float getInterpolation(float t);
};

// Spelt without the "e": the exported name.
class TALVEQAM_EXPORT SinOut33 {
  public:
    static float getInterpolation(float t);
};

}  // namespace Kinetra
