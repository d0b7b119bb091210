#pragma once

#include "examples/effects/common/SampleImage.h"

namespace qam::samples {

// A thin bright circle touching 80 % of the half size, soft on both sides, in red and alpha:
// where the ring is.
SampleImage sparkleBand(int size);
// Glints scattered over a faint ground, in alpha: which parts of the ring sparkle.
SampleImage sparkleGlints(int size);
// A four-pointed star, white, its brightness also in alpha.
SampleImage sparkleStar(int size);
// One black texel.
SampleImage sparkleDark();

}  // namespace qam::samples
