#pragma once

#include "examples/preview/GlCounts.h"

namespace qam::preview {

// Counts the GL work of the host library and the effect. The program that links this defines
// the counted GL entry points itself and exports them (so libraries loaded later bind to them
// first); each forwards to the real one. Until startGlCounting, a wrapper only tests one flag.
// Single-threaded: call from the thread that draws.
//
// What is counted:
//   drawCalls         glDrawArrays and glDrawElements calls
//   vertices          their `count`s
//   programSwitches   glUseProgram with a program other than the one in use
//   textureBinds      glBindTexture calls
//   uploadBytes       pixels handed to glTexImage2D / glTexSubImage2D (width * height * bytes
//                     per pixel, row padding not included) and the imageSize of compressed
//                     uploads; allocations without pixels upload nothing
//   framebufferBinds  glBindFramebuffer calls
//   clears            glClear calls
//   fullScreenPasses  draws of one quad (4 vertices as a strip or fan, or 6 as triangles)
//                     while the viewport covers the whole bound render target: the screen,
//                     or the colour attachment of the bound framebuffer. The vertices are
//                     not read. Attachments allocated before counting started have no known
//                     size and never count.

// Starts counting from zero; framebuffer 0 is `screenWidth` x `screenHeight`.
void startGlCounting(int screenWidth, int screenHeight);
// The counts since the last take (or the start); counting goes on from zero.
GlCounts takeGlCounts();

}  // namespace qam::preview
