#include "Kinetra/Layers/Implementation/WaterPass.h"

#include <GLES2/gl2.h>

#include "Common/Platform/Log.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "Kinetra/Layers/Implementation/BrushPass.h"
#include "Kinetra/Layers/Implementation/BrushQuad.h"

namespace qam {

namespace {

void bindCoordinates(Kinetra::KNShaderManager& shader, int attribute, const Kinetra::KNMesh& mesh) {
    const GLuint location = static_cast<GLuint>(shader.getAttribute(attribute));
    glVertexAttribPointer(location, 3, GL_FLOAT, GL_FALSE, 12, mesh.uv.data());
    glEnableVertexAttribArray(location);
}

}  // namespace

void buildWaterProgram(Kinetra::KNShaderManager& shader, const char* vertexSource,
                       const char* fragmentSource, std::initializer_list<WaterUniform> uniforms) {
    shader.reset();
    shader.createProgram(vertexSource, fragmentSource);
    shader.addAttribute(kBrushPositionAttribute, "aPosition");
    shader.addAttribute(kBrushTexUVAttribute, "aTexUV");
    shader.addAttribute(kWaterTexUVBGAttribute, "aTexUVBG");
    for (const WaterUniform& uniform : uniforms) {
        shader.addUniform(uniform.slot, uniform.name);
    }
}

void fillWaterUV(Kinetra::KNMesh& mesh, Kinetra::KNMesh& background) {
    mesh.uv.clear();
    appendBaseUV(mesh.uv);
    background.uv.clear();
    appendBaseUV(background.uv);
}

void fitWaterBackground(Kinetra::KNMesh& background, int width, int height) {
    if (background.uv.size() >= 4) {
        Kinetra::KNTextureManager::getInstancePtr()->normalizeTextureCoord(background.uv, width,
                                                                           height);
    }
}

bool waterReady(const void* object, const Kinetra::KNMesh& mesh, const Kinetra::KNMesh& background,
                const char* caller) {
    if (mesh.index.size() >= 4 && mesh.vertex.size() >= 4 && mesh.uv.size() >= 4 &&
        background.uv.size() >= 4) {
        return true;
    }
    logErrorOnce(object, "%s: not initialised, nothing drawn", caller);
    return false;
}

void beginWaterPass(Kinetra::KNShaderManager& shader, const Kinetra::KNMesh& mesh,
                    const Kinetra::KNMesh& background) {
    glUseProgram(shader.getProgram());
    bindCoordinates(shader, kBrushTexUVAttribute, mesh);
    bindCoordinates(shader, kWaterTexUVBGAttribute, background);
}

void finishWaterPass(Kinetra::KNShaderManager& shader, const Kinetra::KNMesh& mesh) {
    glDrawElements(GL_TRIANGLE_STRIP, 4, GL_UNSIGNED_SHORT, mesh.index.data());
    for (int attribute : {kBrushPositionAttribute, kBrushTexUVAttribute, kWaterTexUVBGAttribute}) {
        glDisableVertexAttribArray(static_cast<GLuint>(shader.getAttribute(attribute)));
    }
}

}  // namespace qam
