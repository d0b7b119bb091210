#pragma once

#include "examples/common/Png.h"

namespace qam::preview {

// `image` made `factor` times smaller, each pixel the average of a factor x factor box.
Image shrink(const Image& image, int factor);

}  // namespace qam::preview
