#pragma once

#include <array>
#include <vector>

#include "Common/Platform/Export.h"
#include "Kinetra/Core/KNVector.h"

namespace Kinetra {

// The vertex arrays of one layer, handed to GL from client memory by KNIRenderer's attribute
// setters. Owned by the draw class that builds it. The aux arrays are the draw classes' own;
// the renderer never binds them.
class TALVEQAM_EXPORT KNMesh {
  public:
    KNMesh();
    ~KNMesh();

    unsigned int getNumOfVertex() const;
    unsigned int getNumOfVertexIndex() const;
    // Empties every array but aux A, aux B and custom, keeping their storage.
    void reset();

    std::vector<KNVector3D<float>> vertex;
    std::vector<KNVector2D<float>> aux2D;
    std::vector<KNVector3D<float>> normal;
    std::vector<KNVector3D<float>> height;
    std::vector<KNVector3D<float>> tangent;
    std::vector<KNVector3D<float>> auxA;
    std::vector<KNVector3D<float>> uv;  // (u, v, 0)
    std::vector<std::array<float, 4>> color;
    std::vector<unsigned short> index;
    std::vector<float> auxB;
    std::vector<KNVector3D<float>> auxC;
    std::vector<KNVector3D<float>> auxD;
    std::vector<KNVector3D<float>> auxE;
    std::vector<float> custom;
};

}  // namespace Kinetra
