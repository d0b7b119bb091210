#pragma once

#include "examples/preview/Session.h"

namespace qam::preview {

// Where the frames are drawn: a GL context that is current while the surface lives.
class Surface {
  public:
    virtual ~Surface() = default;
    // Hands pending user input to `session`; false once the user asked to stop.
    virtual bool poll(Session& session) = 0;
    // Shows the frame just drawn.
    virtual void present() = 0;
};

}  // namespace qam::preview
