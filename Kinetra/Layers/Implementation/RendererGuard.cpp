#include "Kinetra/Layers/Implementation/RendererGuard.h"

#include <GLES2/gl2.h>

#include "Common/Platform/Log.h"
#include "Kinetra/Core/KNShaderManager.h"

namespace qam {

bool rendererReady(Kinetra::KNIRenderer& renderer, const char* caller) {
    const Kinetra::KNShaderManager* shader = renderer.getShaderManager();
    if (shader != nullptr && shader->getProgram() != 0) {
        return true;
    }
    qam::logError("%s: no program (not initialised, or the context was lost), nothing drawn",
                  caller);
    // The base draws the mesh after drawRender returns: an empty custom draw instead.
    renderer.setCustomDrawArrays(0, GL_TRIANGLE_STRIP);
    return false;
}

}  // namespace qam
