#pragma once

#include "Kinetra/Core/KNMVPManager.h"
#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNShaderManager.h"

namespace qam {

// Lifecycle of the parts a colour brush owns through plain pointers.

// True when both lengths truncate to an int. Any other size (NaN, infinite, 2^31 or more) has
// no whole-pixel value: logged once for `object` under `caller`, and the call must be dropped.
bool wholePixels(const void* object, float width, float height, const char* caller);

// Creates the mesh and the matrices when missing and sets the projection of a width x height
// surface with y growing upwards.
void prepareBrush(Kinetra::KNMesh*& mesh, Kinetra::KNMVPManager*& mvp, float width, float height);
void setSurfaceProjection(Kinetra::KNMVPManager& mvp, float width, float height);

// Deletes whatever exists and nulls the pointers.
void releaseBrush(Kinetra::KNMesh*& mesh, Kinetra::KNMVPManager*& mvp,
                  Kinetra::KNShaderManager*& shader);

// True when initialize has built everything a draw reads; otherwise (a draw before initialize)
// logged once for `object` under `caller`.
bool brushReady(const void* object, const Kinetra::KNMesh* mesh, const Kinetra::KNMVPManager* mvp,
                const Kinetra::KNShaderManager* shader, const char* caller);

}  // namespace qam
