#pragma once

#include "examples/effects/common/SampleImage.h"

namespace qam::samples {

// A white blot with a ragged, crisp edge in alpha: where the finger lays pigment.
SampleImage watercolourBlot(int size);
// A white disc whose alpha fades out from the middle: how far the finger moves the water.
SampleImage watercolourWash(int size);
// Washes of a few pigments drifting into each other across the screen: the colour that the
// finger lays down where it is.
SampleImage watercolourPigments(int width, int height);
// A swirling flow without sources or sinks (the curl of smooth noise), directions biased into
// red and green around 0.5; it tiles.
SampleImage watercolourFlow(int size);

}  // namespace qam::samples
