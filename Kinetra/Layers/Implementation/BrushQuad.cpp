#include "Kinetra/Layers/Implementation/BrushQuad.h"

namespace qam {

Kinetra::KNVector2D<float> quadCorner(const float position[3], int rectAlign, float width,
                                      float height) {
    if (rectAlign == 1) {
        return {position[0] - 0.5f * width, position[1] - 0.5f * height};
    }
    return {position[0], position[1]};
}

void appendBrushQuad(Kinetra::KNMesh& mesh, const float position[3], int rectAlign, float width,
                     float height) {
    const Kinetra::KNVector2D<float> corner = quadCorner(position, rectAlign, width, height);
    const float x0 = corner.x;
    const float y0 = corner.y;
    mesh.vertex.clear();
    mesh.vertex.push_back({x0, y0, 0});
    mesh.vertex.push_back({x0 + width, y0, 0});
    mesh.vertex.push_back({x0, y0 + height, 0});
    mesh.vertex.push_back({x0 + width, x0 + height, 0});
    for (unsigned short i = 0; i < 4; ++i) {
        mesh.index.push_back(i);
    }
}

void appendBaseUV(std::vector<Kinetra::KNVector3D<float>>& uv) {
    uv.push_back({0, 1, 0});
    uv.push_back({1, 1, 0});
    uv.push_back({0, 0, 0});
    uv.push_back({1, 0, 0});
}

}  // namespace qam
