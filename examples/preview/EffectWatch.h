#pragma once

#include <chrono>
#include <string>

namespace qam::preview {

// Watches an effect library file and its assets folder for changes, as a build or an editor
// makes them, without blocking. A change counts once writing has settled.
class EffectWatch {
  public:
    EffectWatch() = default;
    ~EffectWatch();
    EffectWatch(const EffectWatch&) = delete;
    EffectWatch& operator=(const EffectWatch&) = delete;

    // False with the reason in `error` when the folders can't be watched.
    bool open(const std::string& library, const std::string& assets, std::string& error);
    // True once after a change when nothing has changed for a moment since.
    bool settled();

  private:
    using Clock = std::chrono::steady_clock;
    bool drain();

    int mFd = -1;
    std::string mLibraryName;
    int mLibraryFolder = -1;
    int mAssets = -1;
    bool mPending = false;
    Clock::time_point mLastChange;
};

// Copies `library` to a file of its own under a private temporary folder, so the loader opens
// a new library each time (it never closes one it has opened, and matches by path). The copy's
// path, or empty with the reason in `error`.
std::string freshCopy(const std::string& library, std::string& error);

}  // namespace qam::preview
