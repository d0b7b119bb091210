#include "examples/preview/EffectWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace qam::preview {

namespace fs = std::filesystem;

namespace {

// A linker writes the library in several steps; wait until it has been quiet this long.
constexpr std::chrono::milliseconds kQuiet{300};
constexpr uint32_t kChanges = IN_CLOSE_WRITE | IN_MOVED_TO | IN_CREATE | IN_DELETE | IN_MODIFY;

}  // namespace

EffectWatch::~EffectWatch() {
    if (mFd >= 0) {
        close(mFd);
    }
}

bool EffectWatch::open(const std::string& library, const std::string& assets, std::string& error) {
    mFd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    const fs::path path = fs::absolute(library);
    mLibraryName = path.filename();
    // The folder, not the file: builds replace the file by renaming a new one over it.
    mLibraryFolder = mFd < 0 ? -1 : inotify_add_watch(mFd, path.parent_path().c_str(), kChanges);
    mAssets = mLibraryFolder < 0 ? -1 : inotify_add_watch(mFd, assets.c_str(), kChanges);
    if (mAssets < 0) {
        error = "cannot watch " + library + " and " + assets + " for changes: " + strerror(errno);
        return false;
    }
    return true;
}

bool EffectWatch::drain() {
    alignas(inotify_event) char buffer[4096];
    bool changed = false;
    for (ssize_t length; (length = read(mFd, buffer, sizeof buffer)) > 0;) {
        for (char* at = buffer; at < buffer + length;) {
            const auto* event = reinterpret_cast<const inotify_event*>(at);
            // In the library's folder only the library counts; in the assets folder, any file.
            changed =
                changed || event->wd == mAssets || (event->len > 0 && mLibraryName == event->name);
            at += sizeof(inotify_event) + event->len;
        }
    }
    return changed;
}

bool EffectWatch::settled() {
    if (mFd < 0) {
        return false;
    }
    if (drain()) {
        mPending = true;
        mLastChange = Clock::now();
    }
    if (mPending && Clock::now() - mLastChange >= kQuiet) {
        mPending = false;
        return true;
    }
    return false;
}

std::string freshCopy(const std::string& library, std::string& error) {
    static int copies = 0;
    const fs::path folder = fs::temp_directory_path() / ("qam-preview-" + std::to_string(getpid()));
    const fs::path copy =
        folder / (std::to_string(++copies) + "-" + fs::path(library).filename().string());
    std::error_code failure;
    fs::create_directories(folder, failure);
    if (!failure) {
        fs::copy_file(library, copy, fs::copy_options::overwrite_existing, failure);
    }
    if (failure) {
        error = library + ": cannot copy it to load it again: " + failure.message();
        return {};
    }
    return copy;
}

}  // namespace qam::preview
