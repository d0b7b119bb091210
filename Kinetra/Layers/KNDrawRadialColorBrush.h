#pragma once

#include "Common/Platform/Export.h"
#include "Kinetra/Core/KNIRenderer.h"

namespace Kinetra {

class KNMesh;

// Paints, inside a mask, a field pointing towards the position: red and green the direction
// scaled by 0.1 (a linear ramp within 20 pixels of the centre) times the screen ratio, biased
// by 0.5; blue the time step; alpha the mask's coverage times clamp(1 - alpha). Drawn by the
// caller into a frame-buffer texture that steers the advect brushes ("uRadial"). The quad is
// in surface pixels; position is also the field's centre. GL thread only.
class TALVEQAM_EXPORT KNDrawRadialColorBrush : public KNIRenderer {
  public:
    static constexpr unsigned int kUnsetTexture = 0xFFFFFFFFu;

    KNDrawRadialColorBrush();
    ~KNDrawRadialColorBrush() override;

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

    // Also forgets the mask texture: hand it in again.
    void resizeSurface(float width, float height);
    void setSize(float width, float height);
    // The quad's place and the field's centre; rebuilds the quad at the stored size.
    void setPosition(float x, float y, float z);
    // Taken at the next quad rebuild. 1 centres the quad on the position.
    void setRectAlign(int mode);

    // By name through KNTextureManager.
    void setMaskTexture(const char* name);
    void setTimeStep(float timeStep) { mTimeStep = timeStep; }
    // 0 shows the mask as it is, 1 or more hides it.
    void setAlpha(float alpha) { mAlpha = alpha; }
    void setRatio(float x, float y);

    unsigned int getMaskTextureID() const { return mMaskTexture; }
    int getRectAlign() const { return mRectAlign; }
    int getSurfaceWidth() const { return mSurfaceWidth; }
    int getSurfaceHeight() const { return mSurfaceHeight; }
    float getTimeStep() const { return mTimeStep; }
    float getAlpha() const { return mAlpha; }
    const float* getRatio() const { return mRatio; }

  private:
    KNMesh* mRectMesh;
    float mCentre[3];
    unsigned int mMaskTexture;
    int mRectAlign;
    int mSurfaceWidth;
    int mSurfaceHeight;
    float mTimeStep;
    float mAlpha;
    float mRatio[2];
};

}  // namespace Kinetra
