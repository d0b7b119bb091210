#pragma once

#include <cstdint>

namespace qam::preview {

// The GL work of a stretch of a run (see GlCounting.h for what each counter counts).
struct GlCounts {
    uint64_t drawCalls = 0;
    uint64_t vertices = 0;
    uint64_t programSwitches = 0;
    uint64_t textureBinds = 0;
    uint64_t uploadBytes = 0;
    uint64_t framebufferBinds = 0;
    uint64_t clears = 0;
    uint64_t fullScreenPasses = 0;
};

// Every counter with its report name, in report order, so reports loop instead of listing.
struct GlCounter {
    const char* name;
    uint64_t GlCounts::*field;
};

inline constexpr GlCounter kGlCounters[] = {
    {"drawCalls", &GlCounts::drawCalls},
    {"vertices", &GlCounts::vertices},
    {"programSwitches", &GlCounts::programSwitches},
    {"textureBinds", &GlCounts::textureBinds},
    {"uploadBytes", &GlCounts::uploadBytes},
    {"framebufferBinds", &GlCounts::framebufferBinds},
    {"clears", &GlCounts::clears},
    {"fullScreenPasses", &GlCounts::fullScreenPasses},
};

}  // namespace qam::preview
