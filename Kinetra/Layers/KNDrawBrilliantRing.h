#pragma once

#include <vector>

#include "Common/Platform/Export.h"
#include "Kinetra/Core/KNIRenderer.h"
#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNVector.h"

namespace Kinetra {

// Composites the ring: where the diamond or shine images are lit, a zoomed, hue-shifted copy
// of the background under the alpha map, plus blur and the highlight itself; elsewhere the
// background alone. The output alpha is the layer's alpha. After a lost context:
// contextChanged(), then initialize() again.
class TALVEQAM_EXPORT KNDrawBrilliantRing : public KNIRenderer {
  public:
    KNDrawBrilliantRing();
    ~KNDrawBrilliantRing() override;

    // Forgets the program's name, as the base does; defined here so that code built
    // against this class finds it.
    void contextChanged() override;
    void initRender(float width, float height) override;
    void drawRender() override;

    void createRectTextureShader();
    // The whole width x height surface with the base coordinates, and the background
    // coordinates cropped to the "bg" image for that size.
    void createRectVertex(float width, float height);
    // The background seen through a centred window: scale 1 is the whole image, below 1 zooms
    // in (0.75 shows 0.25 to 0.75), above 1 zooms out; the offset moves the window.
    void createTabScaledTextureUV(const float& scale, const KNVector2D<float>& offset);
    // A new quad, background window and zoom (back to 0.95) for the surface.
    void resizeSurface(float width, float height);
    // The quad ignores the position: it is rebuilt at the size last given to setSize, which
    // is 0 x 0 until then.
    void setPosition(float x, float y, float z);
    // Stores the size in whole pixels and rebuilds the quad at the size as given.
    void setSize(float width, float height);

    // Bound as given, unset (all bits) or 0 included.
    void setBackgroundTextureID(const unsigned int& id) { mBackgroundTextureId = id; }
    void setShineTextureID(const unsigned int& id) { mShineTextureId = id; }
    // Read upside down, unlike the other images.
    void setDiamondTextureID(const unsigned int& id) { mDiamondTextureId = id; }
    void setAlphaTextureID(const unsigned int& id) { mAlphaTextureId = id; }
    void setBlurTextureID(const unsigned int& id) { mBlurTextureId = id; }
    void setAlpha(const float& alpha) { mAlpha = alpha; }

    const std::vector<KNVector3D<float>>& getTabScaledTextureUV() const { return mTabScaledUV; }
    const std::vector<KNVector3D<float>>& getBackgroundTextureUV() const { return mBackgroundUV; }

  private:
    void fitSurface(float width, float height);

    KNMesh mMesh;
    float mPosition[3] = {0, 0, 0};
    float mInvSurfaceWidth = 0;
    float mInvSurfaceHeight = 0;
    int mSurfaceWidth = 0;
    int mSurfaceHeight = 0;
    unsigned int mBackgroundTextureId = 0;
    unsigned int mShineTextureId = 0;
    unsigned int mDiamondTextureId = 0;
    unsigned int mAlphaTextureId = 0;
    unsigned int mBlurTextureId = 0;
    float mAlpha = 1.0f;
    std::vector<KNVector3D<float>> mTabScaledUV;   // aTabScaledUV
    std::vector<KNVector3D<float>> mBackgroundUV;  // aTexUVBg
};

}  // namespace Kinetra
