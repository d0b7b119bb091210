#pragma once

#include "Common/Renderer/Base/Renderer.h"

namespace vi {

class ShaderProgram;

// Draws a textured drawable with per-fragment Phong lighting in world space. The effect adds
// "uLightPosition", "uEyePosition" (vec3) and "uAmbient", "uDiffuse", "uSpecular",
// "uShininess" (float) with addUniform.
class TALVEQAM_EXPORT LightRenderer : public Renderer {
  public:
    explicit LightRenderer(Drawable& drawable);
    ~LightRenderer() override;

    // The one light program of the process, outside every effect's list; each call counts
    // as one user, and the program goes with its last user.
    static ShaderProgram* getShaderProgram();
};

}  // namespace vi
