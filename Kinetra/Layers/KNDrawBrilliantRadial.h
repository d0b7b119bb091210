#pragma once

#include <vector>

#include "Common/Platform/Export.h"
#include "Kinetra/Core/KNIRenderer.h"
#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNVector.h"

namespace Kinetra {

// Paints the inscribed disc of its quad with outward directions biased into 0..1 (red, green),
// masked in blue by an alpha shape fixed to the screen times a pattern's alpha, with the time
// step in alpha. The quad is centred on the position. After a lost context: contextChanged(),
// then initialize() again.
class TALVEQAM_EXPORT KNDrawBrilliantRadial : public KNIRenderer {
  public:
    KNDrawBrilliantRadial();
    ~KNDrawBrilliantRadial() override;

    // Forgets the program's name, as the base does; defined here so that code built
    // against this class finds it.
    void contextChanged() override;
    void initRender(float width, float height) override;
    void drawRender() override;

    void createRectTextureShader();
    // The width x height quad centred on the position, with upright texture coordinates,
    // the screen coordinates of its corners and the pattern coordinates.
    void createRectVertex(float width, float height);
    // The screen coordinates, transposed unless the surface was portrait at initialisation.
    void createPatternTextureUV();
    // Turns the texture coordinates upside down; a second call turns them back, and so does
    // the next quad rebuild.
    void flipTextureV();
    void resizeSurface(float width, float height);
    // Rebuilds the quad at the size last given to setSize (720 x 1280 until then).
    void setPosition(float x, float y, float z);
    // Stores the size in whole pixels for the next setPosition; rebuilds nothing.
    void setSize(float width, float height);

    // Bound as given, unset (all bits) or 0 included.
    void setAlphaShapeTextureID(const unsigned int& id) { mAlphaShapeTextureId = id; }
    void setPatternTextureID(const unsigned int& id) { mPatternTextureId = id; }
    // The time step: scales the directions and is written as alpha.
    void setAlpha(const float& timeStep) { mTimeStep = timeStep; }

    const std::vector<KNVector3D<float>>& getPatternTextureUV() const { return mPatternUV; }

  private:
    void setReciprocals(float width, float height);

    KNMesh mMesh;
    float mPosition[3] = {0, 0, 0};
    float mInvSurfaceWidth = 0;
    float mInvSurfaceHeight = 0;
    int mSurfaceWidth = 720;
    int mSurfaceHeight = 1280;
    unsigned int mAlphaShapeTextureId = 0;
    unsigned int mPatternTextureId = 0;
    float mTimeStep = 1.0f;
    std::vector<KNVector3D<float>> mPatternUV;
    // Pattern coordinates follow the screen when set, transposed when clear.
    bool mPatternFollowsScreen = false;
};

}  // namespace Kinetra
