#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "examples/common/Png.h"
#include "examples/preview/EffectWatch.h"
#include "examples/preview/GoldenFrames.h"
#include "examples/preview/Options.h"
#include "examples/preview/RunOutput.h"
#include "examples/preview/RunStats.h"
#include "examples/preview/Script.h"
#include "examples/preview/Session.h"
#include "examples/preview/Surface.h"

namespace qam::preview {

// One run of an effect on a surface: the script frame by frame, and what the options ask of
// it: pictures, golden frames, frame costs and, in a window, reloading the effect when it is
// rebuilt.
class PreviewRun {
  public:
    PreviewRun(const Options& options, const Script& script, const Image& background,
               std::string effect, std::string assets);
    // The exit status.
    int execute(Surface& surface);

  private:
    using Clock = std::chrono::steady_clock;

    bool start(const std::string& library);
    bool startFromCopy(bool replacing);
    bool openOutputs();
    int frameCount() const;
    // Draws the frames; false after a failure it has reported.
    bool drawFrames(Surface& surface);
    bool drawFrame(int frame);
    void reload(int frame);
    int finish();

    const Options& mOptions;
    const Script& mScript;
    const Image& mBackground;
    std::string mEffect;
    std::string mAssets;

    std::unique_ptr<Session> mSession;
    std::optional<RunOutput> mPictures;
    std::optional<GoldenFrames> mGolden;
    std::optional<RunStats> mStats;
    EffectWatch mWatch;
    bool mWatching = false;
    int mFramesDrawn = 0;
    Clock::duration mDrawing{};
};

}  // namespace qam::preview
