#include "Kinetra/Layers/Implementation/BrushPass.h"

#include <GLES2/gl2.h>

namespace qam {

void buildBrushProgram(Kinetra::KNShaderManager& shader, const char* vertexSource,
                       const char* fragmentSource, std::initializer_list<const char*> uniforms) {
    shader.reset();
    shader.createProgram(vertexSource, fragmentSource);
    shader.addAttribute(kBrushPositionAttribute, "aPosition");
    shader.addAttribute(kBrushTexUVAttribute, "aTexUV");
    int slot = 0;
    for (const char* name : uniforms) {
        shader.addUniform(slot++, name);
    }
}

void beginBrushPass(Kinetra::KNShaderManager& shader, const Kinetra::KNMesh& mesh) {
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glUseProgram(shader.getProgram());
    const GLuint texUV = static_cast<GLuint>(shader.getAttribute(kBrushTexUVAttribute));
    glVertexAttribPointer(texUV, 3, GL_FLOAT, GL_FALSE, 12, mesh.uv.data());
    glEnableVertexAttribArray(texUV);
}

void bindBrushTexture(Kinetra::KNShaderManager& shader, int slot, unsigned int unit,
                      unsigned int texture) {
    glActiveTexture(GL_TEXTURE0 + unit);
    glBindTexture(GL_TEXTURE_2D, texture);
    glUniform1i(shader.getUniform(slot), static_cast<GLint>(unit));
}

void bindBrushVertices(Kinetra::KNShaderManager& shader, const Kinetra::KNMesh& mesh) {
    const GLuint position = static_cast<GLuint>(shader.getAttribute(kBrushPositionAttribute));
    glVertexAttribPointer(position, 3, GL_FLOAT, GL_FALSE, 12, mesh.vertex.data());
    glEnableVertexAttribArray(position);
}

void setBrushMatrix(Kinetra::KNShaderManager& shader, Kinetra::KNMVPManager& mvp) {
    glUniformMatrix4fv(shader.getUniform(kBrushMatrixSlot), 1, GL_FALSE, mvp.getMVPMatrix().data());
}

void setBrushValue(Kinetra::KNShaderManager& shader, int slot, float value) {
    glUniform1f(shader.getUniform(slot), value);
}

void finishBrushPass(Kinetra::KNShaderManager& shader, const Kinetra::KNMesh& mesh) {
    glDrawElements(GL_TRIANGLE_STRIP, 4, GL_UNSIGNED_SHORT, mesh.index.data());
    glDisableVertexAttribArray(static_cast<GLuint>(shader.getAttribute(kBrushPositionAttribute)));
    glDisableVertexAttribArray(static_cast<GLuint>(shader.getAttribute(kBrushTexUVAttribute)));
}

}  // namespace qam
