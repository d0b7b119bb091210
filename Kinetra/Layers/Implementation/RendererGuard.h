#pragma once

#include "Kinetra/Core/KNIRenderer.h"

namespace qam {

// For drawRender of the layers built on KNIRenderer: true when `renderer` has a linked
// program. Otherwise (no initRender yet, or a lost context not rebuilt) logs one line under
// `caller` and leaves the base's draw nothing to draw.
bool rendererReady(Kinetra::KNIRenderer& renderer, const char* caller);

}  // namespace qam
