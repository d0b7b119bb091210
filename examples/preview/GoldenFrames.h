#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "examples/common/Png.h"

namespace qam::preview {

struct GoldenTolerance {
    int channel = 2;       // a pixel differs when some channel is off by more than this
    double share = 0.001;  // a frame fails when more than this share of its pixels differ
};

// Chosen frames of a deterministic run kept as PNGs (record), or a later run checked against
// them (compare), with a picture of every failing frame's differences.
class GoldenFrames {
  public:
    enum class Mode { Record, Compare };

    // `folder`: the golden frames, frame-NNNN.png. `outFolder`: where diff-NNNN.png go.
    // `keep`: frame numbers; empty = every frame (record) / every golden frame found (compare).
    GoldenFrames(Mode mode, std::string folder, std::string outFolder, std::vector<int> keep,
                 GoldenTolerance tolerance);

    // Record: creates the folder and removes its old frame PNGs. Compare: lists the golden
    // frames (each kept one must exist; without `keep`, at least one). Both remove stale
    // diff-NNNN.png from outFolder. False with a one-line reason otherwise.
    bool open(std::string& error);
    bool wants(int frame) const;
    // Call for every frame drawn: frames not wanted only mark how far the run got. Record
    // writes the frame; compare checks it and, when it fails, writes its diff-NNNN.png. False
    // only when a file can't be read or written.
    bool add(int frame, const Image& image, std::string& error);
    // One line per failing frame in frame order, including wanted frames the run never drew.
    // Empty when everything matched.
    std::vector<std::string> failures() const;

  private:
    std::string goldenPath(int frame) const;
    std::string diffPath(int frame) const;
    bool listGoldenFrames(std::string& error);
    bool compare(int frame, const Image& image, std::string& error);

    Mode mMode;
    std::string mFolder;
    std::string mOutFolder;
    std::set<int> mFrames;  // the frames wanted; none in a record of every frame
    GoldenTolerance mTolerance;
    std::map<int, std::string> mFailures;
    int mLastDrawn = -1;
};

}  // namespace qam::preview
