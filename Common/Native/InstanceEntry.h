#pragma once

#include "Common/Effect/Effect.h"

namespace qam::host {

// Points the render-core registries at `effect`'s lists and checks that its EGL context and
// GL objects are still there. On a loss, records the current context and makes every
// renderer and texture of the effect forget its GL names. Returns whether the context held.
bool enterInstance(vi::Effect& effect);

// What the usual entry does after a loss: enterInstance, then the effect's onContextLost.
void enterInstanceAndNotify(vi::Effect& effect);

// Builds every program, buffer, location and texture of `effect` again on the current
// context, after enterInstance reported a loss.
void rebuildGLObjects(vi::Effect& effect);

}  // namespace qam::host
