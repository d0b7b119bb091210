#pragma once

#include "Common/Platform/Export.h"
#include "Kinetra/Core/KNIRenderer.h"
#include "Kinetra/Core/KNMesh.h"

namespace Kinetra {

// Paints, inside a mask, a field pointing towards the position with no soft core: red and
// green the direction scaled by 0.1 and by the x and y ratios, biased by 0.5; blue the time
// step times the red of a profile texture ("uTube"); alpha the mask's coverage times
// clamp(1 - alpha). Drawn by the caller into a frame-buffer texture that steers the water
// brushes. The quad is in surface pixels; position is also the field's centre. GL thread only.
class TALVEQAM_EXPORT KNDrawRadialWaterBrush : public KNIRenderer {
  public:
    static constexpr unsigned int kUnsetTexture = 0xFFFFFFFFu;

    KNDrawRadialWaterBrush();
    ~KNDrawRadialWaterBrush() override;

    // Also sets the graph power to 2 and the multiplier to 4.
    // Forgets the program's name, as the base does; defined here so that code built
    // against this class finds it.
    void contextChanged() override;
    void initRender(float width, float height) override;
    void drawRender() override;

    void createRectTextureShader();
    void createRectVertex(float width, float height);
    // Hands the mesh to the renderer.
    void createTextureUV();

    // Also forgets the mask and profile textures: hand them in again.
    void resizeSurface(float width, float height);
    void setSize(float width, float height);
    // Rebuilds the quad at the stored size.
    void setPosition(float x, float y, float z);
    // Taken at the next quad rebuild. 1 centres the quad on the position.
    void setRectAlign(int mode);

    // By name through KNTextureManager.
    void setMaskTexture(const char* name);
    void setGraphTexture(const char* name);
    void setTimeStep(float timeStep) { mTimeStep = timeStep; }
    // 0 shows the mask as it is, 1 or more hides it.
    void setAlpha(float alpha) { mAlpha = alpha; }
    void setRatio(float x, float y);
    // Sent as "uPow" and "uMultiply", which the picture does not depend on.
    void setGraphPow(float power) { mGraphPow = power; }
    void setGraphMultiply(float multiplier) { mGraphMultiply = multiplier; }

    unsigned int getMaskTextureID() const { return mMaskTexture; }
    unsigned int getGraphTextureID() const { return mGraphTexture; }
    int getRectAlign() const { return mRectAlign; }
    int getSurfaceWidth() const { return mSurfaceWidth; }
    int getSurfaceHeight() const { return mSurfaceHeight; }
    float getTimeStep() const { return mTimeStep; }
    float getAlpha() const { return mAlpha; }
    const float* getRatio() const { return mRatio; }
    float getGraphPow() const { return mGraphPow; }
    float getGraphMultiply() const { return mGraphMultiply; }

  private:
    KNMesh mRectMesh;
    float mCentre[3];
    unsigned int mMaskTexture;
    unsigned int mGraphTexture;
    int mRectAlign;
    int mSurfaceWidth;
    int mSurfaceHeight;
    float mTimeStep;
    float mAlpha;
    float mRatio[2];
    float mGraphPow;
    float mGraphMultiply;
};

}  // namespace Kinetra
