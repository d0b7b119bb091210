#pragma once

#include "examples/effects/common/SampleImage.h"

namespace qam::samples {

// A white blot whose alpha fades out towards a ragged edge: the brushes' mask.
SampleImage watercolourBlot(int size);
// Washes of a few pigments drifting into each other across the screen: the colour that the
// finger lays down where it is.
SampleImage watercolourPigments(int width, int height);
// A swirling flow without sources or sinks (the curl of smooth noise), directions biased into
// red and green around 0.5; it tiles.
SampleImage watercolourFlow(int size);

}  // namespace qam::samples
