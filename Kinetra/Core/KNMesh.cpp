#include "Kinetra/Core/KNMesh.h"

namespace Kinetra {

KNMesh::KNMesh() = default;

KNMesh::~KNMesh() = default;

void KNMesh::reset() {
    vertex.clear();
    aux2D.clear();
    normal.clear();
    height.clear();
    tangent.clear();
    uv.clear();
    color.clear();
    index.clear();
    auxC.clear();
    auxD.clear();
    auxE.clear();
}

unsigned int KNMesh::getNumOfVertex() const {
    return static_cast<unsigned int>(vertex.size());
}

unsigned int KNMesh::getNumOfVertexIndex() const {
    return static_cast<unsigned int>(index.size());
}

}  // namespace Kinetra
