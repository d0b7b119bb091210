#pragma once

#include "Common/Platform/Export.h"
#include "Kinetra/Core/KNIRenderer.h"
#include "Kinetra/Core/KNMesh.h"

namespace Kinetra {

// Smears a radial velocity texture (the output of KNDrawBrilliantRadial) against its own
// directions in an 8-tap streak; every channel of the result is the glow intensity. Draws
// into whatever framebuffer is bound, with the blend state the caller left on the renderer.
// After a lost context: contextChanged(), then initialize() again.
class TALVEQAM_EXPORT KNDrawBrilliantAdvect : public KNIRenderer {
  public:
    KNDrawBrilliantAdvect();
    ~KNDrawBrilliantAdvect() override;

    // Forgets the program's name, as the base does; defined here so that code built
    // against this class finds it.
    void contextChanged() override;
    void initRender(float width, float height) override;
    void drawRender() override;

    void createRectTextureShader();
    // The whole width x height surface; the base coordinates are rewritten with it.
    void createRectVertex(float width, float height);
    void resizeSurface(float width, float height);

    // Bound as given, unset (all bits) or 0 included.
    void setRadialTextureID(const unsigned int& id) { mRadialTextureId = id; }
    unsigned int getRadialTextureID() const { return mRadialTextureId; }

  private:
    KNMesh mMesh;
    unsigned int mRadialTextureId = 0;
};

}  // namespace Kinetra
