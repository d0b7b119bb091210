#pragma once

namespace qam::preview {

// The time effects see (CLOCK_REALTIME, which the library's timers read). It follows the wall
// clock until fixEffectClock(); from then on it stands at the start of that second and moves
// only by setEffectClock(), so a run draws the same frames however fast the machine is.
// The library's own clock code is untouched: this process's clock_gettime answers it.
void fixEffectClock();
// Sets the clock `seconds` after the second it was fixed at: rates that divide each other then
// give the same times at the same moments, with no rounding carried from frame to frame.
void setEffectClock(double seconds);

}  // namespace qam::preview
