#pragma once

#include "Common/Platform/HeadlessContext.h"
#include "examples/preview/Surface.h"

namespace qam::preview {

// Surfaceless EGL: no input, nothing to show.
class HeadlessSurface : public Surface {
  public:
    HeadlessSurface(int width, int height) : mContext(width, height) {}
    bool poll(Session&) override { return true; }
    void present() override {}

  private:
    HeadlessContext mContext;
};

}  // namespace qam::preview
