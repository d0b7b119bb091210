#pragma once

#include "Kinetra/Core/KNIRenderer.h"
#include "Kinetra/Core/KNMesh.h"

namespace qam {

// The radial brushes' quad: bottom-left, bottom-right, top-left, top-right, the true
// rectangle (unlike the colour and water brushes' quad), centred on the position when
// `rectAlign` is 1. The vertex and index arrays are emptied and refilled.
void buildRadialQuad(Kinetra::KNMesh& mesh, const float position[3], int rectAlign, float width,
                     float height);

// Refills the base coordinates (0, 1), (1, 1), (0, 0), (1, 0) and hands the mesh to the
// renderer.
void fillRadialUV(Kinetra::KNIRenderer& renderer, Kinetra::KNMesh& mesh);

}  // namespace qam
