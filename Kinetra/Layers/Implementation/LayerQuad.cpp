#include "Kinetra/Layers/Implementation/LayerQuad.h"

namespace qam {

namespace {

// Empties the vertex array (its storage kept) and appends the first three corners; returns
// the bottom-left corner.
Kinetra::KNVector3D<float> firstThreeCorners(Kinetra::KNMesh& mesh, const float position[3],
                                             int rectAlign, float width, float height) {
    float x0 = position[0];
    float y0 = position[1];
    if (rectAlign == kRectAlignCentre) {
        x0 -= 0.5f * width;
        y0 -= 0.5f * height;
    }
    mesh.vertex.clear();
    mesh.vertex.push_back({x0, y0, 0});
    mesh.vertex.push_back({x0 + width, y0, 0});
    mesh.vertex.push_back({x0, y0 + height, 0});
    return {x0, y0, 0};
}

void appendStripIndices(std::vector<unsigned short>& index) {
    for (unsigned short i = 0; i < 4; ++i) {
        index.push_back(i);
    }
}

}  // namespace

void buildBrushQuad(Kinetra::KNMesh& mesh, const float position[3], int rectAlign, float width,
                    float height) {
    const Kinetra::KNVector3D<float> corner =
        firstThreeCorners(mesh, position, rectAlign, width, height);
    mesh.vertex.push_back({corner.x + width, corner.x + height, 0});
    appendStripIndices(mesh.index);
}

void buildRadialQuad(Kinetra::KNMesh& mesh, const float position[3], int rectAlign, float width,
                     float height) {
    const Kinetra::KNVector3D<float> corner =
        firstThreeCorners(mesh, position, rectAlign, width, height);
    mesh.vertex.push_back({corner.x + width, corner.y + height, 0});
    mesh.index.clear();
    appendStripIndices(mesh.index);
}

void appendBaseUV(std::vector<Kinetra::KNVector3D<float>>& uv) {
    uv.push_back({0, 1, 0});
    uv.push_back({1, 1, 0});
    uv.push_back({0, 0, 0});
    uv.push_back({1, 0, 0});
}

}  // namespace qam
