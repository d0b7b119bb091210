#pragma once

#include <string>
#include <vector>

#include "examples/preview/GoldenFrames.h"

namespace qam::preview {

// What the command line asks for.
struct Options {
    std::string effect;  // empty: the default sample
    int frames = 0;      // 0: not given
    int width = 360;
    int height = 640;
    std::string background;
    std::string script;
    std::string out = "out";
    bool outGiven = false;
    std::string assets;  // empty: the effect library's folder
    double rate = 30.0;
    bool window = false;
    bool help = false;
    bool stats = false;
    bool fixedClock = false;  // also on with --record and --compare
    std::string record;       // the golden frames' folder, when recording
    std::string compare;      // the golden frames' folder, when comparing
    std::vector<int> keep;    // empty: every frame
    GoldenTolerance tolerance;
};

// Reads argv; false with a one-line reason in `error` on a bad command line.
bool parseOptions(int argc, char** argv, Options& options, std::string& error);

extern const char* const kUsageText;

}  // namespace qam::preview
