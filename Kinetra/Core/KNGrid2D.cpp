#include "Kinetra/Core/KNGrid2D.h"

#include <algorithm>
#include <cmath>
#include <iostream>

#include "Common/Platform/Log.h"

namespace Kinetra {

KNGrid2D::KNGrid2D() = default;

KNGrid2D::~KNGrid2D() {
    qam::forgetLoggedOnce(this);
}

KNVector2D<int> KNGrid2D::getResolution() {
    return mResolution;
}

KNVector2D<double> KNGrid2D::getDimension() {
    return mGrid.dimension;
}

KNVector2D<double> KNGrid2D::getCellSize() {
    return mGrid.cellSize;
}

void KNGrid2D::getResolution(int* x, int* y) {
    if (x == nullptr || y == nullptr) {
        qam::logErrorOnce(this, "KNGrid2D::getResolution: null output pointer, nothing written");
        return;
    }
    *x = mResolution.x;
    *y = mResolution.y;
}

void KNGrid2D::getDimension(double* x, double* y) {
    if (x == nullptr || y == nullptr) {
        qam::logErrorOnce(this, "KNGrid2D::getDimension: null output pointer, nothing written");
        return;
    }
    *x = mGrid.dimension.x;
    *y = mGrid.dimension.y;
}

void KNGrid2D::getCellSize(double* x, double* y) {
    if (x == nullptr || y == nullptr) {
        qam::logErrorOnce(this, "KNGrid2D::getCellSize: null output pointer, nothing written");
        return;
    }
    *x = mGrid.cellSize.x;
    *y = mGrid.cellSize.y;
}

void KNGrid2D::getNodesOfCell(const int& i, const int& j, int* nodes) {
    if (nodes == nullptr) {
        qam::logErrorOnce(this, "KNGrid2D::getNodesOfCell: null output pointer, nothing written");
        return;
    }
    // Plain arithmetic: a cell outside the grid gives the nodes the same formula gives.
    const int w = mGrid.nodesPerRow;
    const int n = i + j * w;
    nodes[0] = n;
    nodes[1] = n + 1;
    nodes[2] = n + 1 + w;
    nodes[3] = n + w;
}

void KNGrid2D::setGrid(const int& nx, const int& ny, const double& dx, const double& dy) {
    // The messages name setGrid2D rather than setGrid; they are kept word for word.
    if (nx < 1 || ny < 1) {
        std::cout << "Error@KNGrid2D::setGrid2D(): Invalid resolution." << std::endl;
        return;
    }
    if (dx <= 0 || dy <= 0) {
        std::cout << "Error@KNGrid2D::setGrid2D(): Invalid dimension." << std::endl;
        return;
    }
    reset();
    Fields& g = mGrid;
    const double hx = dx / nx;
    const double hy = dy / ny;
    mResolution = {nx, ny};
    g.dimension = {dx, dy};
    g.cellSize = {hx, hy};
    g.cellCount = nx * ny;
    g.cellCountPlusNy = nx * ny + ny;
    g.cellCountPlusNx = nx * ny + nx;
    g.cellCountPlusNxCopy = nx * ny + nx;
    g.cellCountPlusNyCopy = nx * ny + ny;
    g.nodeCount = (nx + 1) * (ny + 1);
    g.nodesPerRow = nx + 1;
    g.nodesPerColumn = ny + 1;
    g.lastCellColumn = nx - 1;
    g.lastCellRow = ny - 1;
    g.cellCountCopy = nx * ny;
    g.halfCell = {hx * 0.5, hy * 0.5};
    g.squaredCell = {hx * hx, hy * hy};
    g.squaredCellProduct = (hx * hx) * (hy * hy);
    g.minCell = std::min(hx, hy);
    g.maxCell = std::max(hx, hy);
    g.cellDiagonal = std::sqrt(hx * hx + hy * hy);
    g.epsilon = g.minCell * 0.001;
    g.upperBound = {dx - g.epsilon, dy - g.epsilon};
}

void KNGrid2D::setGrid(const KNVector2D<int>& resolution, const KNVector2D<double>& dimension) {
    setGrid(resolution.x, resolution.y, dimension.x, dimension.y);
}

void KNGrid2D::reset() {
    mResolution = {};
    mGrid = Fields{};
}

void KNGrid2D::copy(const KNGrid2D& other) {
    reset();
    if (&other == this) {
        return;
    }
    setName(other.getName());
    mResolution = other.mResolution;
    mGrid = other.mGrid;
}

}  // namespace Kinetra
