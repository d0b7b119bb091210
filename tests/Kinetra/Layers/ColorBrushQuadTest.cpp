#include <GLES2/gl2.h>

#include <vector>

#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Layers/KNDrawAdvectColorBrush.h"
#include "Kinetra/Layers/KNDrawBGAdvectColorBrush.h"
#include "Kinetra/Layers/KNDrawMixColorBrush.h"
#include "tests/Kinetra/Layers/LayerTestSupport.h"
#include "tests/support/GLTest.h"

namespace {

using Kinetra::KNMesh;
using qam::test::GLTest;
using qam::test::LayerTexture;

void expectVertices(const KNMesh& mesh, const std::vector<std::array<float, 2>>& corners) {
    ASSERT_EQ(mesh.vertex.size(), corners.size());
    for (size_t i = 0; i < corners.size(); ++i) {
        EXPECT_FLOAT_EQ(mesh.vertex[i].x, corners[i][0]) << "vertex " << i;
        EXPECT_FLOAT_EQ(mesh.vertex[i].y, corners[i][1]) << "vertex " << i;
        EXPECT_EQ(mesh.vertex[i].z, 0.0f) << "vertex " << i;
    }
}

// The quad builders of the three colour brushes share one recipe, quirks included.
template <typename Brush>
class ColorBrushQuadTest : public GLTest {};

using ColorBrushes =
    ::testing::Types<Kinetra::KNDrawAdvectColorBrush, Kinetra::KNDrawBGAdvectColorBrush,
                     Kinetra::KNDrawMixColorBrush>;
TYPED_TEST_SUITE(ColorBrushQuadTest, ColorBrushes);

TYPED_TEST(ColorBrushQuadTest, FourthCornerTakesItsHeightFromX0) {
    TypeParam brush;
    brush.initialize(300, 200, 0);
    expectVertices(*brush.getMesh(), {{0, 0}, {300, 0}, {0, 200}, {300, 200}});

    // Alignment waits for the next rebuild, then centres the quad on the position.
    brush.setRectAlign(1);
    expectVertices(*brush.getMesh(), {{0, 0}, {300, 0}, {0, 200}, {300, 200}});
    brush.setPosition(0, 0, 0);
    expectVertices(*brush.getMesh(), {{-150, -100}, {150, -100}, {-150, 100}, {150, 50}});
    EXPECT_EQ(brush.getRectAlign(), 1);
    EXPECT_EQ(brush.getPosition()[2], 0.0f);

    // Any other mode puts the bottom-left corner at the position.
    brush.setRectAlign(2);
    brush.setPosition(10, 30, 5);
    expectVertices(*brush.getMesh(), {{10, 30}, {310, 30}, {10, 230}, {310, 210}});
}

TYPED_TEST(ColorBrushQuadTest, IndicesAndCoordinatesGrowWithEveryRebuild) {
    TypeParam brush;
    brush.initialize(64, 64, 0);
    const KNMesh& mesh = *brush.getMesh();
    ASSERT_EQ(mesh.uv.size(), 4u);
    const float base[4][2] = {{0, 1}, {1, 1}, {0, 0}, {1, 0}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(mesh.uv[i].x, base[i][0]);
        EXPECT_EQ(mesh.uv[i].y, base[i][1]);
        EXPECT_EQ(mesh.uv[i].z, 0.0f);
    }

    brush.setSize(300.7f, 200.2f);
    brush.setSize(300.7f, 200.2f);
    brush.setSize(300.7f, 200.2f);
    ASSERT_EQ(mesh.index.size(), 16u);
    for (size_t i = 0; i < mesh.index.size(); ++i) {
        EXPECT_EQ(mesh.index[i], i % 4);
    }
    // setSize builds with the size as given, setPosition with the stored whole pixels.
    EXPECT_FLOAT_EQ(mesh.vertex[3].x, 300.7f);
    brush.setPosition(0, 0, 0);
    expectVertices(mesh, {{0, 0}, {300, 0}, {0, 200}, {300, 200}});
    EXPECT_EQ(brush.getSurfaceWidth(), 300);
    EXPECT_EQ(brush.getSurfaceHeight(), 200);

    // A second initialize appends the coordinates again; only the first four are drawn.
    brush.initialize(64, 64, 0);
    EXPECT_EQ(mesh.uv.size(), 8u);
    EXPECT_EQ(mesh.index.size(), 24u);
}

}  // namespace
