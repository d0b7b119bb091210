#include "Kinetra/Core/KNGrid2D.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "tests/support/LogCapture.h"

namespace {

using Kinetra::KNGrid2D;

// What `call` writes to standard output.
template <typename Call>
std::string stdoutOf(Call call) {
    testing::internal::CaptureStdout();
    call();
    return testing::internal::GetCapturedStdout();
}

TEST(KNGrid2D, FourByTwoCellsOverEightByTwo) {
    KNGrid2D grid;
    const std::string out = stdoutOf([&] { grid.setGrid(4, 2, 8.0, 2.0); });
    EXPECT_EQ(out, "");

    int nx = 0, ny = 0;
    grid.getResolution(&nx, &ny);
    EXPECT_EQ(nx, 4);
    EXPECT_EQ(ny, 2);
    double hx = 0, hy = 0;
    grid.getCellSize(&hx, &hy);
    EXPECT_DOUBLE_EQ(hx, 2.0);
    EXPECT_DOUBLE_EQ(hy, 1.0);
    double dx = 0, dy = 0;
    grid.getDimension(&dx, &dy);
    EXPECT_DOUBLE_EQ(dx, 8.0);
    EXPECT_DOUBLE_EQ(dy, 2.0);
    EXPECT_EQ(grid.getResolution().x, 4);
    EXPECT_DOUBLE_EQ(grid.getDimension().y, 2.0);
    EXPECT_DOUBLE_EQ(grid.getCellSize().x, 2.0);

    EXPECT_EQ(grid.getCellCount(), 8);
    EXPECT_EQ(grid.getFaceCountX(), 10);  // 5 x 2
    EXPECT_EQ(grid.getFaceCountY(), 12);  // 4 x 3
    EXPECT_EQ(grid.getNodeCount(), 15);
    EXPECT_EQ(grid.getNodesPerRow(), 5);
    EXPECT_EQ(grid.getNodesPerColumn(), 3);
    EXPECT_EQ(grid.getLastCellColumn(), 3);
    EXPECT_EQ(grid.getLastCellRow(), 1);
    EXPECT_DOUBLE_EQ(grid.getHalfCell().x, 1.0);
    EXPECT_DOUBLE_EQ(grid.getHalfCell().y, 0.5);
    EXPECT_DOUBLE_EQ(grid.getSquaredCell().x, 4.0);
    EXPECT_DOUBLE_EQ(grid.getSquaredCellProduct(), 4.0);
    EXPECT_DOUBLE_EQ(grid.getMinCell(), 1.0);
    EXPECT_DOUBLE_EQ(grid.getMaxCell(), 2.0);
    EXPECT_DOUBLE_EQ(grid.getCellDiagonal(), std::sqrt(5.0));
    EXPECT_DOUBLE_EQ(grid.getEpsilon(), 0.001);
    EXPECT_DOUBLE_EQ(grid.getUpperBound().x, 7.999);
    EXPECT_DOUBLE_EQ(grid.getUpperBound().y, 1.999);

    int nodes[4] = {0, 0, 0, 0};
    grid.getNodesOfCell(1, 1, nodes);
    EXPECT_EQ(nodes[0], 6);
    EXPECT_EQ(nodes[1], 7);
    EXPECT_EQ(nodes[2], 12);
    EXPECT_EQ(nodes[3], 11);
}

TEST(KNGrid2D, InvalidGridsArePrintedAndChangeNothing) {
    KNGrid2D grid;
    grid.setGrid(Kinetra::KNVector2D<int>{4, 2}, Kinetra::KNVector2D<double>{8.0, 2.0});

    EXPECT_EQ(stdoutOf([&] { grid.setGrid(0, 5, 1, 1); }),
              "Error@KNGrid2D::setGrid2D(): Invalid resolution.\n");
    EXPECT_EQ(stdoutOf([&] { grid.setGrid(5, 5, 0, 1); }),
              "Error@KNGrid2D::setGrid2D(): Invalid dimension.\n");
    EXPECT_EQ(stdoutOf([&] { grid.setGrid(5, 5, 1, -2); }),
              "Error@KNGrid2D::setGrid2D(): Invalid dimension.\n");
    // The resolution is checked first.
    EXPECT_EQ(stdoutOf([&] { grid.setGrid(-1, 5, 0, 1); }),
              "Error@KNGrid2D::setGrid2D(): Invalid resolution.\n");

    EXPECT_EQ(grid.getResolution().x, 4);
    EXPECT_EQ(grid.getNodeCount(), 15);
    EXPECT_DOUBLE_EQ(grid.getUpperBound().x, 7.999);
}

TEST(KNGrid2D, ResetAndCopy) {
    KNGrid2D grid;
    grid.setName("field");
    grid.setGrid(3, 3, 3.0, 6.0);

    KNGrid2D other;
    other.copy(grid);
    EXPECT_EQ(other.getName(), "field");
    EXPECT_EQ(other.getNodeCount(), 16);
    EXPECT_DOUBLE_EQ(other.getCellSize().y, 2.0);
    EXPECT_DOUBLE_EQ(other.getUpperBound().y, 5.999);

    grid.reset();
    EXPECT_EQ(grid.getName(), "field");
    EXPECT_EQ(grid.getResolution().x, 0);
    EXPECT_EQ(grid.getNodeCount(), 0);
    EXPECT_DOUBLE_EQ(grid.getCellDiagonal(), 0.0);

    // Copying itself resets and copies nothing.
    other.copy(other);
    EXPECT_EQ(other.getNodeCount(), 0);
    EXPECT_EQ(other.getName(), "field");
}

TEST(KNGrid2D, BadOutputsAndCellsAreLoggedOnce) {
    KNGrid2D grid;
    grid.setGrid(2, 2, 1.0, 1.0);
    qam::test::LogCapture log;
    int x = -7;
    double d = -7;
    int nodes[4] = {-1, -1, -1, -1};
    grid.getResolution(&x, nullptr);
    grid.getDimension(nullptr, &d);
    grid.getCellSize(&d, nullptr);
    grid.getNodesOfCell(0, 0, nullptr);
    grid.getNodesOfCell(2, 0, nodes);
    grid.getNodesOfCell(0, -1, nodes);
    EXPECT_EQ(log.messages().size(), 6u);
    EXPECT_EQ(x, -7);
    EXPECT_EQ(d, -7);
    EXPECT_EQ(nodes[0], -1);

    // The last cell is inside.
    grid.getNodesOfCell(1, 1, nodes);
    EXPECT_EQ(nodes[2], 8);
    EXPECT_EQ(log.messages().size(), 6u);
}

}  // namespace
