#pragma once

#include "examples/effects/common/SampleImage.h"

namespace qam::samples {

// A soft circle at 80 % of the half size, in red and alpha: where a wave front pushes the
// water, and how hard across its width.
SampleImage rippleFront(int size);
// A disc fading out towards its edge, in alpha: the water a wave has passed over.
SampleImage rippleWater(int size);
// One texel of no flow: direction (0.5, 0.5).
SampleImage rippleStill();

}  // namespace qam::samples
