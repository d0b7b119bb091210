#pragma once

#include "Kinetra/Core/KNMesh.h"

namespace qam {

// The radial brushes' quad: bottom-left, bottom-right, top-left, top-right, the true
// rectangle (unlike the colour and water brushes' quad), centred on the position when
// `rectAlign` is 1. The vertex and index arrays are emptied and refilled.
void buildRadialQuad(Kinetra::KNMesh& mesh, const float position[3], int rectAlign, float width,
                     float height);

}  // namespace qam
