#pragma once

#include "Common/Platform/Export.h"
#include "Kinetra/Core/KNIRenderer.h"

namespace Kinetra {

class KNMesh;

// Fills a mask's coverage with a colour image fixed to the screen, not to the moving mask:
// the radial colour ("uRadialColor") that KNDrawAdvectColorBrush lays over its advection.
// The quad is in surface pixels around the position. GL thread only.
class TALVEQAM_EXPORT KNDrawRadialColorBrushColor : public KNIRenderer {
  public:
    static constexpr unsigned int kUnsetTexture = 0xFFFFFFFFu;

    KNDrawRadialColorBrushColor();
    ~KNDrawRadialColorBrushColor() override;

    // Also takes the size as the renderer's screen size.
    // Forgets the program's name, as the base does; defined here so that code built
    // against this class finds it.
    void contextChanged() override;
    void initRender(float width, float height) override;
    void drawRender() override;

    void createRectTextureShader();
    // Creates the mesh on first use.
    void createRectVertex(float width, float height);
    // Creates the mesh if there is none and hands it to the renderer.
    void createTextureUV();

    // Also takes the size as the screen size and forgets both textures: hand them in again.
    void resizeSurface(float width, float height);
    void setSize(float width, float height);
    // Rebuilds the quad at the stored size.
    void setPosition(float x, float y, float z);
    // Taken at the next quad rebuild. 1 centres the quad on the position.
    void setRectAlign(int mode);

    // By name through KNTextureManager.
    void setMaskTexture(const char* name);
    void setColorTexture(const char* name);
    void setColorTextureID(unsigned int texture) { mColorTexture = texture; }
    // The colour image spans `ratio` screens. Uses the screen size, so call it after
    // initRender: until then the image collapses to its corner texel.
    void setResolutionRatio(float ratio);

    unsigned int getMaskTextureID() const { return mMaskTexture; }
    unsigned int getColorTextureID() const { return mColorTexture; }
    int getRectAlign() const { return mRectAlign; }
    int getSurfaceWidth() const { return mSurfaceWidth; }
    int getSurfaceHeight() const { return mSurfaceHeight; }
    float getResolutionRatio() const { return mResolutionRatio; }
    float getInvScreenX() const { return mInvScreen[0]; }
    float getInvScreenY() const { return mInvScreen[1]; }

  private:
    KNMesh* mRectMesh;
    float mCentre[3];
    unsigned int mMaskTexture;
    unsigned int mColorTexture;
    int mRectAlign;
    int mSurfaceWidth;
    int mSurfaceHeight;
    float mResolutionRatio;
    float mInvScreen[2];
};

}  // namespace Kinetra
