#include "Kinetra/Core/KNMesh.h"

#include <gtest/gtest.h>

namespace {

using Kinetra::KNMesh;

TEST(KNMesh, ResetEmptiesAllButItsKeptArraysAndKeepsStorage) {
    KNMesh mesh;
    EXPECT_EQ(mesh.getNumOfVertex(), 0u);
    const Kinetra::KNVector3D<float> p{1, 2, 3};
    mesh.vertex.assign(5, p);
    mesh.aux2D.assign(2, {1, 2});
    mesh.normal.assign(5, p);
    mesh.height.assign(5, p);
    mesh.tangent.assign(5, p);
    mesh.auxA.assign(3, p);
    mesh.uv.assign(5, p);
    mesh.color.assign(5, {1, 1, 1, 1});
    mesh.index = {0, 1, 2, 3, 4, 0};
    mesh.auxB.assign(2, 1.0f);
    mesh.auxC.assign(1, p);
    mesh.auxD.assign(1, p);
    mesh.auxE.assign(1, p);
    mesh.custom.assign(4, 0.5f);
    EXPECT_EQ(mesh.getNumOfVertex(), 5u);
    EXPECT_EQ(mesh.getNumOfVertexIndex(), 6u);

    const auto capacity = mesh.vertex.capacity();
    mesh.reset();
    EXPECT_TRUE(mesh.vertex.empty() && mesh.aux2D.empty() && mesh.normal.empty() &&
                mesh.height.empty() && mesh.tangent.empty() && mesh.uv.empty() &&
                mesh.color.empty() && mesh.index.empty() && mesh.auxC.empty() &&
                mesh.auxD.empty() && mesh.auxE.empty());
    EXPECT_EQ(mesh.auxA.size(), 3u);
    EXPECT_EQ(mesh.auxB.size(), 2u);
    EXPECT_EQ(mesh.custom.size(), 4u);
    EXPECT_EQ(mesh.vertex.capacity(), capacity);
    EXPECT_EQ(mesh.getNumOfVertex(), 0u);
}

}  // namespace
