#pragma once

#include "Common/Platform/Export.h"
#include "Kinetra/Core/KNObject.h"
#include "Kinetra/Core/KNVector.h"

namespace Kinetra {

// A regular grid of nx x ny cells over a dx x dy rectangle, with the quantities simulation
// code needs precomputed. It holds no per-node data.
class TALVEQAM_EXPORT KNGrid2D : public KNObject {
  public:
    KNGrid2D();
    ~KNGrid2D() override;

    virtual void getResolution(int* x, int* y);
    virtual void getDimension(double* x, double* y);
    virtual void getCellSize(double* x, double* y);
    virtual KNVector2D<int> getResolution();
    virtual KNVector2D<double> getDimension();
    virtual KNVector2D<double> getCellSize();
    // The four corner nodes of cell (i, j), counter-clockwise from the lower left.
    virtual void getNodesOfCell(const int& i, const int& j, int* nodes);

    // An invalid resolution or dimension is reported on standard output and changes nothing.
    void setGrid(const int& nx, const int& ny, const double& dx, const double& dy);
    void setGrid(const KNVector2D<int>& resolution, const KNVector2D<double>& dimension);
    // Every grid field to 0; the name stays.
    void reset();
    // reset(), then the name and every field of `other` (copying itself leaves it reset).
    void copy(const KNGrid2D& other);

    int getCellCount() const { return mGrid.cellCount; }
    // Cell faces across x, (nx + 1) · ny, and across y, nx · (ny + 1).
    int getFaceCountX() const { return mGrid.cellCountPlusNy; }
    int getFaceCountY() const { return mGrid.cellCountPlusNx; }
    int getNodeCount() const { return mGrid.nodeCount; }
    int getNodesPerRow() const { return mGrid.nodesPerRow; }
    int getNodesPerColumn() const { return mGrid.nodesPerColumn; }
    int getLastCellColumn() const { return mGrid.lastCellColumn; }
    int getLastCellRow() const { return mGrid.lastCellRow; }
    KNVector2D<double> getHalfCell() const { return mGrid.halfCell; }
    KNVector2D<double> getSquaredCell() const { return mGrid.squaredCell; }
    double getSquaredCellProduct() const { return mGrid.squaredCellProduct; }
    double getMinCell() const { return mGrid.minCell; }
    double getMaxCell() const { return mGrid.maxCell; }
    double getCellDiagonal() const { return mGrid.cellDiagonal; }
    // Distance kept from the upper edges; the upper bound is the largest inside coordinate.
    double getEpsilon() const { return mGrid.epsilon; }
    KNVector2D<double> getUpperBound() const { return mGrid.upperBound; }

  private:
    // The resolution sits outside the grouped fields: the group holds doubles, so on 32-bit
    // ARM it would start on an 8-byte boundary and move the resolution off its place after the
    // name. The repeated counts are separate fields, as simulation code reads them under
    // different names.
    struct Fields {
        KNVector2D<double> dimension;
        KNVector2D<double> cellSize;
        int cellCount = 0;
        int cellCountPlusNy = 0;
        int cellCountPlusNx = 0;
        int cellCountPlusNxCopy = 0;
        int cellCountPlusNyCopy = 0;
        int nodeCount = 0;
        int nodesPerRow = 0;
        int nodesPerColumn = 0;
        int lastCellColumn = 0;
        int lastCellRow = 0;
        int cellCountCopy = 0;
        KNVector2D<double> halfCell;
        KNVector2D<double> squaredCell;
        double squaredCellProduct = 0;
        double minCell = 0;
        double maxCell = 0;
        double cellDiagonal = 0;
        double epsilon = 0;
        KNVector2D<double> upperBound;
        long long spare[4] = {0, 0, 0, 0};
    };

    KNVector2D<int> mResolution;
    Fields mGrid;
};

}  // namespace Kinetra
