#pragma once

#include <vector>

#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNVector.h"

// Builders of the one quad every effect layer draws: vertex 0 bottom-left, 1 bottom-right,
// 2 top-left, 3 top-right, drawn as a four-index triangle strip.
namespace qam {

// rectAlign value that centres the quad on the position; any other puts its bottom-left
// corner there.
inline constexpr int kRectAlignCentre = 1;

// The colour and water brushes' quad. Their fourth corner takes its y from x0, not y0, and
// their indices are appended without emptying the array first; both are kept as the brushes
// have always behaved (only the first four indices are drawn).
void buildBrushQuad(Kinetra::KNMesh& mesh, const float position[3], int rectAlign, float width,
                    float height);

// The radial brushes' quad: the true rectangle, and the index array refilled.
void buildRadialQuad(Kinetra::KNMesh& mesh, const float position[3], int rectAlign, float width,
                     float height);

// Appends the base coordinates (0, 1), (1, 1), (0, 0), (1, 0): texture row v = 1 on the
// bottom vertices.
void appendBaseUV(std::vector<Kinetra::KNVector3D<float>>& uv);

}  // namespace qam
