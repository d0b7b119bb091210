#pragma once

#include <initializer_list>

#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNShaderManager.h"

namespace qam {

// What the two water brushes add to the colour brushes' pass (BrushPass.h): a second set of
// texture coordinates for the background ("aTexUVBG"), fitted to the surface by the texture
// manager, and uniform slots that may leave gaps.

inline constexpr int kWaterTexUVBGAttribute = 2;  // "aTexUVBG"

struct WaterUniform {
    int slot;
    const char* name;
};

// Resets `shader`, builds the program, registers "aPosition", "aTexUV" and "aTexUVBG" as
// attributes 0, 1 and 2, then `uniforms` under their slots.
void buildWaterProgram(Kinetra::KNShaderManager& shader, const char* vertexSource,
                       const char* fragmentSource, std::initializer_list<WaterUniform> uniforms);

// Refills both coordinate arrays with the base coordinates.
void fillWaterUV(Kinetra::KNMesh& mesh, Kinetra::KNMesh& background);
// Crops the background coordinates to the registered "bg" image for a width x height surface;
// nothing while they are not built yet (initialize fits them).
void fitWaterBackground(Kinetra::KNMesh& background, int width, int height);

// True when initialize has built the arrays a draw reads; otherwise (a draw before initialize)
// logged once for `object` under `caller`. Without a program (a lost context) the brush still
// draws: GL draws nothing with program 0.
bool waterReady(const void* object, const Kinetra::KNMesh& mesh, const Kinetra::KNMesh& background,
                const char* caller);
// The program and both coordinate arrays; blending is the caller's.
void beginWaterPass(Kinetra::KNShaderManager& shader, const Kinetra::KNMesh& mesh,
                    const Kinetra::KNMesh& background);
// Draws the strip of the first four indices and disables the three attributes.
void finishWaterPass(Kinetra::KNShaderManager& shader, const Kinetra::KNMesh& mesh);

}  // namespace qam
