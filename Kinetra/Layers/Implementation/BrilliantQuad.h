#pragma once

#include <vector>

#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNVector.h"

namespace qam {

// Quad builders of the brilliant layers. Vertex order: bottom-left, bottom-right, top-left,
// top-right, y growing upwards.

// Sizes the vertex, coordinate and index arrays to exactly four entries (whatever a caller
// left in them is cut off or zero-filled), then writes the width x height rectangle whose
// bottom-left corner is (x0, y0) and the indices 0, 1, 2, 3. The coordinates are left to the
// layer.
void buildBrilliantQuad(Kinetra::KNMesh& mesh, float x0, float y0, float width, float height);

// (0, 1), (1, 1), (0, 0), (1, 0): texture row v = 1 on the bottom vertices.
void writeBaseUV(std::vector<Kinetra::KNVector3D<float>>& uv);

}  // namespace qam
