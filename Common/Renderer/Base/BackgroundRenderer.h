#pragma once

#include "Common/Renderer/Base/Renderer.h"

namespace vi {

class ShaderProgram;

// Draws a drawable's 2-D positions textured with its texture, untransformed: the renderer of
// full-screen backdrops. All background renderers of an effect share one program.
class TALVEQAM_EXPORT BackgroundRenderer : public Renderer {
  public:
    explicit BackgroundRenderer(Drawable& drawable);
    // Destroys the shared program: the program has one reference however many renderers
    // use it, so the first renderer to go takes it along.
    ~BackgroundRenderer() override;

    // The current effect's background program, made on first use in each effect's list.
    static ShaderProgram* getShaderProgram();

    // Takes the drawable's texture coordinates again after they were edited.
    void updateTextureCoords();

    // Index of "aTextureCoords" in mAttributes; -1 when the program has none.
    int mTextureCoordsIndex;
};

}  // namespace vi
