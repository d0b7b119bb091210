#include "Kinetra/Core/KNMesh.h"

#include "tests/Kinetra/Core/CoreTestSupport.h"

// reset() empties every array but auxA, auxB and custom, and keeps the storage.
TEST(KNMesh, ResetEmptiesAllButItsKeptArraysAndKeepsStorage) {
    Kinetra::KNMesh mesh;
    for (auto* array : {&mesh.vertex, &mesh.normal, &mesh.height, &mesh.tangent, &mesh.auxA,
                        &mesh.uv, &mesh.auxC, &mesh.auxD, &mesh.auxE}) {
        array->assign(5, {1, 2, 3});
    }
    mesh.aux2D.assign(2, {1, 2});
    mesh.color.assign(5, {1, 1, 1, 1});
    mesh.index = {0, 1, 2, 3, 4, 0};
    mesh.auxB.assign(2, 1.0f);
    mesh.custom.assign(4, 0.5f);
    EXPECT_EQ(std::pair(mesh.getNumOfVertex(), mesh.getNumOfVertexIndex()), std::pair(5u, 6u));
    const auto capacity = mesh.vertex.capacity();
    mesh.reset();
    EXPECT_TRUE(mesh.vertex.empty() && mesh.aux2D.empty() && mesh.normal.empty() &&
                mesh.height.empty() && mesh.tangent.empty() && mesh.uv.empty() &&
                mesh.color.empty() && mesh.index.empty() && mesh.auxC.empty() &&
                mesh.auxD.empty() && mesh.auxE.empty());
    EXPECT_EQ(mesh.auxA.size() + mesh.auxB.size() + mesh.custom.size(), 11u);
    EXPECT_EQ(mesh.vertex.capacity(), capacity);
}
