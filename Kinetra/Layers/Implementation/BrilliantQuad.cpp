#include "Kinetra/Layers/Implementation/BrilliantQuad.h"

namespace qam {

void buildBrilliantQuad(Kinetra::KNMesh& mesh, float x0, float y0, float width, float height) {
    mesh.vertex.resize(4);
    mesh.uv.resize(4);
    mesh.index.resize(4);
    mesh.vertex[0] = {x0, y0, 0};
    mesh.vertex[1] = {x0 + width, y0, 0};
    mesh.vertex[2] = {x0, y0 + height, 0};
    mesh.vertex[3] = {x0 + width, y0 + height, 0};
    for (unsigned short i = 0; i < 4; ++i) {
        mesh.index[i] = i;
    }
}

void writeBaseUV(std::vector<Kinetra::KNVector3D<float>>& uv) {
    uv.resize(4);
    uv[0] = {0, 1, 0};
    uv[1] = {1, 1, 0};
    uv[2] = {0, 0, 0};
    uv[3] = {1, 0, 0};
}

}  // namespace qam
