#pragma once

#include <memory>

#include "Common/Platform/Export.h"
#include "Common/Renderer/Base/BackgroundRenderer.h"
#include "Common/Renderer/Base/Drawable.h"

namespace vi {

class Texture;

// A texture behind everything: a full-screen quad whose texture coordinates crop the image
// to the screen's aspect ratio, the first texture row at the top of the screen.
class TALVEQAM_EXPORT Background {
  public:
    // `texture` is shown, not owned; it must outlive the background.
    explicit Background(Texture& texture);
    Background(const Background&) = delete;
    Background& operator=(const Background&) = delete;
    ~Background();

    // Aspect fill: the image keeps its proportions, covers the screen and is cut evenly on
    // the two sides that overflow.
    void setScreenSize(unsigned width, unsigned height);
    // Draws into whatever framebuffer is bound, without clearing.
    void renderFrame();

    std::unique_ptr<BackgroundRenderer> mRenderer;
    Drawable mDrawable;
    Texture* mTexture;
};

}  // namespace vi
