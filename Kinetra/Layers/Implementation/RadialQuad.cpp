#include "Kinetra/Layers/Implementation/RadialQuad.h"

namespace qam {

void buildRadialQuad(Kinetra::KNMesh& mesh, const float position[3], int rectAlign, float width,
                     float height) {
    float x0 = position[0];
    float y0 = position[1];
    if (rectAlign == 1) {
        x0 -= 0.5f * width;
        y0 -= 0.5f * height;
    }
    mesh.vertex.clear();
    mesh.vertex.push_back({x0, y0, 0});
    mesh.vertex.push_back({x0 + width, y0, 0});
    mesh.vertex.push_back({x0, y0 + height, 0});
    mesh.vertex.push_back({x0 + width, y0 + height, 0});
    mesh.index.clear();
    for (unsigned short i = 0; i < 4; ++i) {
        mesh.index.push_back(i);
    }
}

}  // namespace qam
