
#include <type_traits>

#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Layers/KNDrawAdvectColorBrush.h"
#include "Kinetra/Layers/KNDrawBGAdvectColorBrush.h"
#include "Kinetra/Layers/KNDrawBGAdvectWaterBrush.h"
#include "Kinetra/Layers/KNDrawMixColorBrush.h"
#include "Kinetra/Layers/KNDrawMixWaterBrush.h"
#include "Kinetra/Layers/KNDrawRadialColorBrush.h"
#include "Kinetra/Layers/KNDrawRadialColorBrushColor.h"
#include "Kinetra/Layers/KNDrawRadialWaterBrush.h"
#include "tests/Kinetra/Layers/LayerTestSupport.h"

namespace {

using namespace qam::test;

using Kinetra::KNMesh;

// The colour brushes hold their mesh by pointer, the water brushes by value.
template <typename Brush>
const KNMesh& meshOf(Brush& brush) {
    if constexpr (std::is_pointer_v<decltype(brush.getMesh())>) {
        return *brush.getMesh();
    } else {
        return brush.getMesh();
    }
}

template <typename Brush>
constexpr bool kWater = std::is_same_v<Brush, Kinetra::KNDrawBGAdvectWaterBrush> ||
                        std::is_same_v<Brush, Kinetra::KNDrawMixWaterBrush>;

// The quad builders of the colour and water brushes share one recipe, quirks included.
template <typename Brush>
class BrushQuadTest : public GLTest {};

using Brushes = ::testing::Types<Kinetra::KNDrawAdvectColorBrush, Kinetra::KNDrawBGAdvectColorBrush,
                                 Kinetra::KNDrawMixColorBrush, Kinetra::KNDrawBGAdvectWaterBrush,
                                 Kinetra::KNDrawMixWaterBrush>;
TYPED_TEST_SUITE(BrushQuadTest, Brushes);

TYPED_TEST(BrushQuadTest, FourthCornerTakesItsHeightFromX0) {
    TypeParam brush;
    brush.initialize(300, 200, 0);
    const KNMesh& mesh = meshOf(brush);
    expectPoints(mesh.vertex, {{0, 0}, {300, 0}, {0, 200}, {300, 200}});

    // Alignment waits for the next rebuild, then centres the quad on the position.
    brush.setRectAlign(1);
    expectPoints(mesh.vertex, {{0, 0}, {300, 0}, {0, 200}, {300, 200}});
    brush.setPosition(0, 0, 0);
    expectPoints(mesh.vertex, {{-150, -100}, {150, -100}, {-150, 100}, {150, 50}});

    // Any other mode puts the bottom-left corner at the position.
    brush.setRectAlign(2);
    brush.setPosition(10, 30, 5);
    expectPoints(mesh.vertex, {{10, 30}, {310, 30}, {10, 230}, {310, 210}});
}

TYPED_TEST(BrushQuadTest, IndicesGrowByFourWithEveryRebuild) {
    TypeParam brush;
    brush.initialize(64, 64, 0);
    const KNMesh& mesh = meshOf(brush);
    expectPoints(mesh.uv, {{0, 1}, {1, 1}, {0, 0}, {1, 0}});

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
    expectPoints(mesh.vertex, {{0, 0}, {300, 0}, {0, 200}, {300, 200}});
    EXPECT_EQ(brush.getSurfaceHeight(), 200);

    // A second initialize: the colour brushes append the coordinates again (only the first
    // four are drawn), the water brushes start afresh.
    brush.initialize(64, 64, 0);
    EXPECT_EQ(mesh.uv.size(), kWater<TypeParam> ? 4u : 8u);
    EXPECT_EQ(mesh.index.size(), kWater<TypeParam> ? 4u : 24u);
}

// The radial brushes build the true rectangle instead, and refill their indices.
template <typename Brush>
class RadialQuadTest : public LayerTest {};

using RadialBrushes =
    ::testing::Types<Kinetra::KNDrawRadialColorBrush, Kinetra::KNDrawRadialColorBrushColor,
                     Kinetra::KNDrawRadialWaterBrush>;
TYPED_TEST_SUITE(RadialQuadTest, RadialBrushes);

TYPED_TEST(RadialQuadTest, BuildsTheTrueRectangleAndRefillsItsIndices) {
    TypeParam brush;
    brush.initialize(300, 200);
    const KNMesh& mesh = *brush.getMesh();
    expectPoints(mesh.vertex, {{0, 0}, {300, 0}, {0, 200}, {300, 200}});
    expectPoints(mesh.uv, {{0, 1}, {1, 1}, {0, 0}, {1, 0}});

    // Centred: the fourth corner is (x0 + width, y0 + height), not the brushes' x0-based one.
    brush.setRectAlign(1);
    brush.setSize(300, 200);
    brush.setSize(300, 200);
    brush.setSize(300, 200);
    expectPoints(mesh.vertex, {{-150, -100}, {150, -100}, {-150, 100}, {150, 100}});
    EXPECT_EQ(mesh.index, (std::vector<unsigned short>{0, 1, 2, 3}));
    EXPECT_EQ(mesh.uv.size(), 4u);

    // setPosition rebuilds at the stored whole-pixel size.
    brush.setSize(300.7f, 200.2f);
    EXPECT_FLOAT_EQ(mesh.vertex[3].x, 150.35f);
    brush.setPosition(10, 20, 0);
    expectPoints(mesh.vertex, {{-140, -80}, {160, -80}, {-140, 120}, {160, 120}});

    // A new surface is the new size of the quad, about the same position; the mask is
    // forgotten.
    namedTexture("mask", {255, 255, 255, 255});
    brush.setMaskTexture("mask");
    brush.resizeSurface(400.5f, 100);
    EXPECT_EQ(brush.getSurfaceWidth(), 400);
    expectPoints(mesh.vertex, {{-190.25f, -30}, {210.25f, -30}, {-190.25f, 70}, {210.25f, 70}});
    EXPECT_EQ(brush.getMaskTextureID(), kUnset);

    // Initialising again starts from an empty mesh.
    brush.initialize(300, 200);
    EXPECT_EQ(mesh.uv.size(), 4u);
    EXPECT_EQ(mesh.index.size(), 4u);
}

}  // namespace
