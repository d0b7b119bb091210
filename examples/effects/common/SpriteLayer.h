#pragma once

#include "Kinetra/Core/KNIRenderer.h"
#include "Kinetra/Core/KNMesh.h"

namespace qam::samples {

// A texture on a rectangle in surface pixels, times the renderer colour: frame-buffer textures
// composed on the screen, shapes stamped into frame-buffer objects. Texture v = 0 is the
// rectangle's bottom, as frame-buffer textures are stored. After a lost context:
// contextChanged(), then initialize() again.
class SpriteLayer : public Kinetra::KNIRenderer {
  public:
    SpriteLayer();

    // A camera over the width x height surface and a rectangle covering it.
    void initRender(float width, float height) override;
    void drawRender() override;

    // Lower-left corner and size, in pixels.
    void setRect(float x, float y, float width, float height);
    // A rectangle of `size` x `size` centred on (x, y).
    void setSquare(float x, float y, float size);
    void setTextureID(unsigned id) { mTexture = id; }
    // Whether the texture's alpha counts (the default) or the texture is taken as opaque.
    void setTextureAlpha(bool used) { mTextureAlpha = used ? 1.0f : 0.0f; }

  private:
    Kinetra::KNMesh mMesh;
    unsigned mTexture = 0;
    float mTextureAlpha = 1.0f;
};

}  // namespace qam::samples
