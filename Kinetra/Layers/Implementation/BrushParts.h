#pragma once

#include "Kinetra/Core/KNMVPManager.h"
#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNShaderManager.h"

namespace qam {

// Lifecycle of the parts a colour brush owns through plain pointers.

// True for a surface of at least one whole pixel that an int holds; anything else is logged
// under `caller` and must be dropped.
bool usableSurface(float width, float height, const char* caller);

// Creates the mesh and the matrices when missing and sets the projection of a width x height
// surface with y growing upwards.
void prepareBrush(Kinetra::KNMesh*& mesh, Kinetra::KNMVPManager*& mvp, float width, float height);
void setSurfaceProjection(Kinetra::KNMVPManager& mvp, float width, float height);

// Deletes whatever exists and nulls the pointers.
void releaseBrush(Kinetra::KNMesh*& mesh, Kinetra::KNMVPManager*& mvp,
                  Kinetra::KNShaderManager*& shader);

// True when initialize has built everything a draw needs; logged under `caller` otherwise.
bool brushReady(const Kinetra::KNMesh* mesh, const Kinetra::KNMVPManager* mvp,
                const Kinetra::KNShaderManager* shader, const char* caller);

}  // namespace qam
