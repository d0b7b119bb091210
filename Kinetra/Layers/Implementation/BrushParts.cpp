#include "Kinetra/Layers/Implementation/BrushParts.h"

#include "Common/Platform/Log.h"
#include "Common/Platform/Truncation.h"

namespace qam {

bool wholePixels(const void* object, float width, float height, const char* caller) {
    if (truncatesToInt(width) && truncatesToInt(height)) {
        return true;
    }
    logErrorOnce(object, "%s: surface %gx%g has no whole-pixel size, ignored", caller,
                 static_cast<double>(width), static_cast<double>(height));
    return false;
}

void prepareBrush(Kinetra::KNMesh*& mesh, Kinetra::KNMVPManager*& mvp, float width, float height) {
    if (mesh == nullptr) {
        mesh = new Kinetra::KNMesh();
    }
    if (mvp == nullptr) {
        mvp = new Kinetra::KNMVPManager();
    }
    setSurfaceProjection(*mvp, width, height);
}

void setSurfaceProjection(Kinetra::KNMVPManager& mvp, float width, float height) {
    mvp.setOrtho(0, width, 0, height, -5000, 5000);
}

void releaseBrush(Kinetra::KNMesh*& mesh, Kinetra::KNMVPManager*& mvp,
                  Kinetra::KNShaderManager*& shader) {
    delete mesh;
    mesh = nullptr;
    delete mvp;
    mvp = nullptr;
    delete shader;
    shader = nullptr;
}

bool brushReady(const void* object, const Kinetra::KNMesh* mesh, const Kinetra::KNMVPManager* mvp,
                const Kinetra::KNShaderManager* shader, const char* caller) {
    if (mesh != nullptr && mvp != nullptr && shader != nullptr && mesh->index.size() >= 4 &&
        mesh->uv.size() >= 4 && mesh->vertex.size() >= 4) {
        return true;
    }
    logErrorOnce(object, "%s: not initialised, nothing drawn", caller);
    return false;
}

}  // namespace qam
