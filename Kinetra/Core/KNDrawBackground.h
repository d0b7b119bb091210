#pragma once

#include "Common/Platform/Export.h"
#include "Kinetra/Core/KNIRenderer.h"
#include "Kinetra/Core/KNMesh.h"

namespace Kinetra {

// One texture as a full-screen quad in pixel coordinates, cropped to keep the registered
// "bg" image's aspect ratio and tinted (and faded) by the renderer colour.
class TALVEQAM_EXPORT KNDrawBackground : public KNIRenderer {
  public:
    KNDrawBackground();
    ~KNDrawBackground() override;

    // Empty: the program name is kept after a lost context, unlike the base.
    void contextChanged() override;
    void initRender(float width, float height) override;
    void drawRender() override;

    void createRectVertex(float width, float height);
    // Image row 0, the top of an uploaded picture, at the top of the screen.
    void createTextureUV();
    // A new surface size; the coordinates are cropped again as they stand.
    void resizeSurface(float width, float height);
    void setTexture(const char* name);
    void setTextureID(const unsigned int& id);
    unsigned int getTextureID() const;
    // Flips the coordinates vertically, for a texture rendered into a frame-buffer object;
    // a second call flips them back.
    void setFBOUV();
    bool getFBOUV() const;

  private:
    void cropToBackground();

    KNMesh mMesh;
    unsigned int mTextureId = 0;
    float mSurfaceSize[2] = {0.0f, 0.0f};
    bool mFBOUV = false;
};

}  // namespace Kinetra
