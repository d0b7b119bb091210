#pragma once

#include <string>

#include "examples/common/Png.h"
#include "examples/preview/Session.h"

namespace qam::preview {

// A quiet vertical gradient, the background when no --bg is given.
Image defaultBackground(int width, int height);

// Hands the effect its resources as the Java side would: `background` as "bg", and every
// other resource name from NAME.png (a texture) or NAME.bin (a model) in `folder`. A name
// with neither is reported on stderr and left out; false when a PNG there can't be read.
bool loadResources(Session& session, const Image& background, const std::string& folder);

}  // namespace qam::preview
