#pragma once

#include "Common/Platform/Export.h"
#include "Kinetra/Core/KNIRenderer.h"

namespace Kinetra {

class KNMesh;

// Cross-fades a rear and a front full-screen texture by one alpha: 1 shows the rear only, 0
// the front only. Always opaque. Pixel coordinates under an orthographic camera.
class TALVEQAM_EXPORT KNDrawBGTilt : public KNIRenderer {
  public:
    KNDrawBGTilt();
    ~KNDrawBGTilt() override;
    KNDrawBGTilt(const KNDrawBGTilt&) = delete;
    KNDrawBGTilt& operator=(const KNDrawBGTilt&) = delete;

    // Empty: the program name is kept after a lost context, unlike the base.
    void contextChanged() override;
    void initRender(float width, float height) override;
    void drawRender() override;

    void resizeSurface(float width, float height);
    // Alignment 1 centres the quad on the origin; anything else puts its lower-left corner
    // there.
    void createRectVertex(float width, float height);
    void setRectAlign(unsigned int align);
    void setSize(float width, float height);
    void setAlphaBlend(float alpha);
    void setRearTexture(const char* name);
    void setFrontTexture(const char* name);
    void setRearTextureID(unsigned int id);
    void setFrontTextureID(unsigned int id);
    // Flipped coordinates, for textures rendered into a frame-buffer object.
    void setFBOUV();
    bool getFBOUV() const;
    void createTextureUV();
    void createFBOTextureUV();

  private:
    KNMesh& mesh();

    KNMesh* mMesh = nullptr;
    unsigned int mRearTextureId = 0;
    unsigned int mFrontTextureId = 0;
    unsigned int mRectAlign = 0;
    float mWidth = 720.0f;
    float mHeight = 1280.0f;
    float mAlphaScale = 1.0f;
    bool mFBOUV = false;
};

}  // namespace Kinetra
