#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "examples/preview/GlCounts.h"

namespace qam::preview {

// The GL work and frame times of one run: the setup before the first frame (loading, init,
// resources) apart from the frames, whose totals cover the frames only.
class RunStats {
  public:
    struct FrameTimes {
        double medianMs = 0.0;
        double p95Ms = 0.0;
        double maxMs = 0.0;
    };

    void setSetup(const GlCounts& counts) { mSetup = counts; }
    // `seconds`: the draw and the GPU finishing it.
    void addFrame(const GlCounts& counts, double seconds);

    // Nearest-rank percentiles of the frame times; zeros without frames.
    FrameTimes frameTimes() const;
    // One row per counter (setup, frames total, mean and max per frame), then the frame times.
    void print(FILE* out) const;
    bool writeJson(const std::string& path, std::string& error) const;

  private:
    struct Frame {
        GlCounts counts;
        double seconds;
    };

    GlCounts total() const;

    GlCounts mSetup;
    std::vector<Frame> mFrames;
};

}  // namespace qam::preview
