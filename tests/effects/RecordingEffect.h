#pragma once

// C interface of the recording test effect, for the C++ and Java tests that host it.
extern "C" {
// Every hook call since the last reset, one per line, e.g. "onTouchDown 0.5 0.25".
const char* recordingEffectCalls();
void recordingEffectReset();
}
