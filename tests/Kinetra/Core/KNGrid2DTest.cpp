#include "Kinetra/Core/KNGrid2D.h"

#include "tests/Kinetra/Core/CoreTestSupport.h"

namespace {

using Kinetra::KNGrid2D;

// Every derived field of a grid, in the order read below; empty lists: all zero.
void expectFields(KNGrid2D& g, std::vector<int> ints, std::vector<double> doubles) {
    EXPECT_EQ((std::vector<int>{g.getResolution().x, g.getResolution().y, g.getCellCount(),
                                g.getFaceCountX(), g.getFaceCountY(), g.getNodeCount(),
                                g.getNodesPerRow(), g.getNodesPerColumn(), g.getLastCellColumn(),
                                g.getLastCellRow()}),
              ints.empty() ? std::vector<int>(10) : ints);
    const std::vector<double> actual = {
        g.getDimension().x,   g.getDimension().y,   g.getCellSize().x,
        g.getCellSize().y,    g.getHalfCell().x,    g.getHalfCell().y,
        g.getSquaredCell().x, g.getSquaredCell().y, g.getSquaredCellProduct(),
        g.getMinCell(),       g.getMaxCell(),       g.getCellDiagonal(),
        g.getEpsilon(),       g.getUpperBound().x,  g.getUpperBound().y};
    for (size_t k = 0; k < actual.size(); ++k) {
        EXPECT_DOUBLE_EQ(actual[k], doubles.empty() ? 0.0 : doubles[k]) << "field " << k;
    }
}

// Four by two cells over 8 x 3.
const std::vector<int> kInts = {4, 2, 8, 10, 12, 15, 5, 3, 3, 1};
const std::vector<double> kDoubles = {8, 3,   2, 1.5, 1,      0.75,   4,     2.25,
                                      9, 1.5, 2, 2.5, 0.0015, 7.9985, 2.9985};

TEST(KNGrid2D, DerivedFieldsCopyAndReset) {
    KNGrid2D grid, other;
    grid.setName("field");
    grid.setGrid(Kinetra::KNVector2D<int>{4, 2}, Kinetra::KNVector2D<double>{8.0, 3.0});
    expectFields(grid, kInts, kDoubles);
    int nx = 0, ny = 0;
    double d[4] = {};
    grid.getResolution(&nx, &ny);
    grid.getDimension(d, d + 1);
    grid.getCellSize(d + 2, d + 3);
    EXPECT_EQ((std::vector<double>{1.0 * nx, 1.0 * ny, d[0], d[1], d[2], d[3]}),
              (std::vector<double>{4, 2, 8, 3, 2, 1.5}));

    other.copy(grid);
    expectFields(other, kInts, kDoubles);
    grid.reset();  // keeps the name
    EXPECT_EQ(std::pair(grid.getName(), other.getName()),
              std::pair(std::string("field"), std::string("field")));
    expectFields(grid, {}, {});
    other.copy(other);  // copying itself resets and copies nothing
    EXPECT_EQ(other.getNodeCount(), 0);

    // hx² · hy² is the product of the two squares (left to right differs in the last bit).
    other.setGrid(3, 5, 1.0, 1.0);
    const double hx = 1.0 / 3, hy = 1.0 / 5;
    EXPECT_EQ(other.getSquaredCellProduct(), (hx * hx) * (hy * hy));
}

TEST(KNGrid2D, InvalidGridsAndOutputsAreReportedAndCellsFollowTheFormulaInsideAndOut) {
    KNGrid2D grid;
    grid.setGrid(4, 2, 8.0, 3.0);
    // The resolution is checked first.
    const std::vector<std::pair<std::vector<double>, const char*>> cases = {
        {{5, 0, 1, 1}, "resolution"},
        {{5, 5, 0, 1}, "dimension"},
        {{5, 5, 1, -2}, "dimension"},
        {{0, 5, 0, 1}, "resolution"}};
    for (const auto& [in, what] : cases) {
        testing::internal::CaptureStdout();
        grid.setGrid(static_cast<int>(in[0]), static_cast<int>(in[1]), in[2], in[3]);
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
                  std::string("Error@KNGrid2D::setGrid2D(): Invalid ") + what + ".\n");
    }
    expectFields(grid, kInts, kDoubles);

    // Null outputs are logged, once each, and nothing is written.
    LogCapture log;
    int x = -7;
    double d = -7;
    for (int round = 0; round < 2; ++round) {
        grid.getResolution(&x, nullptr);
        grid.getDimension(nullptr, &d);
        grid.getCellSize(&d, nullptr);
        grid.getNodesOfCell(0, 0, nullptr);
    }
    EXPECT_EQ(log.messages().size(), 4u);
    EXPECT_EQ((std::vector<double>{1.0 * x, d}), (std::vector<double>{-7, -7}));
    // The last cell, then cells outside the grid: the same arithmetic (5 nodes per row).
    const std::vector<std::pair<std::pair<int, int>, std::vector<int>>> cells = {
        {{3, 1}, {8, 9, 14, 13}},
        {{4, 0}, {4, 5, 10, 9}},
        {{0, -1}, {-5, -4, 1, 0}},
        {{-1, 0}, {-1, 0, 5, 4}}};
    for (const auto& [cell, expected] : cells) {
        int nodes[4] = {};
        grid.getNodesOfCell(cell.first, cell.second, nodes);
        EXPECT_EQ(std::vector<int>(nodes, nodes + 4), expected);
    }
}

}  // namespace
