#include "Kinetra/Layers/Implementation/RadialQuad.h"

#include "Kinetra/Layers/Implementation/BrushQuad.h"

namespace qam {

void buildRadialQuad(Kinetra::KNMesh& mesh, const float position[3], int rectAlign, float width,
                     float height) {
    const Kinetra::KNVector2D<float> corner = quadCorner(position, rectAlign, width, height);
    mesh.vertex.clear();
    mesh.vertex.push_back({corner.x, corner.y, 0});
    mesh.vertex.push_back({corner.x + width, corner.y, 0});
    mesh.vertex.push_back({corner.x, corner.y + height, 0});
    mesh.vertex.push_back({corner.x + width, corner.y + height, 0});
    mesh.index.clear();
    for (unsigned short i = 0; i < 4; ++i) {
        mesh.index.push_back(i);
    }
}

void fillRadialUV(Kinetra::KNIRenderer& renderer, Kinetra::KNMesh& mesh) {
    mesh.uv.clear();
    appendBaseUV(mesh.uv);
    renderer.setMesh(&mesh);
}

}  // namespace qam
