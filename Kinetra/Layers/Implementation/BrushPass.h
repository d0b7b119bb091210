#pragma once

#include <initializer_list>

#include "Kinetra/Core/KNMVPManager.h"
#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNShaderManager.h"

namespace qam {

// The one-pass draw shared by the colour brushes, which own their program, matrices and mesh
// instead of deriving from KNIRenderer. Uniforms are addressed by the slot they were
// registered under.

inline constexpr int kBrushPositionAttribute = 0;  // "aPosition"
inline constexpr int kBrushTexUVAttribute = 1;     // "aTexUV"
inline constexpr int kBrushMatrixSlot = 0;         // "uMVPMatrix" in every brush

// Resets `shader`, builds the program and registers both attributes, then `uniforms` as slots
// 0, 1, 2, ... in the order given.
void buildBrushProgram(Kinetra::KNShaderManager& shader, const char* vertexSource,
                       const char* fragmentSource, std::initializer_list<const char*> uniforms);

// Blending on (and left on), the program, the texture coordinates.
void beginBrushPass(Kinetra::KNShaderManager& shader, const Kinetra::KNMesh& mesh);
// Binds `texture` as it is, unset or 0 included, to `unit` and points the sampler there.
void bindBrushTexture(Kinetra::KNShaderManager& shader, int slot, unsigned int unit,
                      unsigned int texture);
void bindBrushVertices(Kinetra::KNShaderManager& shader, const Kinetra::KNMesh& mesh);
void setBrushMatrix(Kinetra::KNShaderManager& shader, Kinetra::KNMVPManager& mvp);
void setBrushValue(Kinetra::KNShaderManager& shader, int slot, float value);
// Draws the strip of the first four indices and disables both attributes.
void finishBrushPass(Kinetra::KNShaderManager& shader, const Kinetra::KNMesh& mesh);

}  // namespace qam
