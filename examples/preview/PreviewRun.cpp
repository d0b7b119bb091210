#include "examples/preview/PreviewRun.h"

#include <GLES2/gl2.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <thread>

#include "examples/preview/EffectClock.h"
#include "examples/preview/GlCounting.h"
#include "examples/preview/Progress.h"
#include "examples/preview/Resources.h"

namespace qam::preview {
namespace {

constexpr int kDefaultFrames = 60;
constexpr int kFailed = 1;

bool fail(const std::string& message) {
    fprintf(stderr, "qam-preview: %s\n", message.c_str());
    return false;
}

int failed(const std::string& message) {
    fail(message);
    return kFailed;
}

}  // namespace

PreviewRun::PreviewRun(const Options& options, const Script& script, const Image& background,
                       std::string effect, std::string assets)
    : mOptions(options),
      mScript(script),
      mBackground(background),
      mEffect(std::move(effect)),
      mAssets(std::move(assets)) {}

int PreviewRun::execute(Surface& surface) {
    if (mOptions.stats) {
        mStats.emplace();
        startGlCounting(mOptions.width, mOptions.height);
    }
    if (mOptions.fixedClock) {
        fixEffectClock();
    }
    if (!(mOptions.window ? startFromCopy(false) : start(mEffect)) || !openOutputs() ||
        !drawFrames(surface)) {
        return kFailed;
    }
    return finish();
}

// Loads the effect, then hands the resources over after init, as the Java side does (init's
// first step drops static pixels).
bool PreviewRun::start(const std::string& library) {
    mSession = std::make_unique<Session>();
    std::string error;
    if (!mSession->loadEffect(library, error)) {
        return fail(error);
    }
    mSession->init(mOptions.width, mOptions.height);
    if (!loadResources(*mSession, mBackground, mAssets)) {
        return false;
    }
    if (mStats) {
        const GlCounts setup = takeGlCounts();  // a reload's work is no frame's
        if (mFramesDrawn == 0) {
            mStats->setSetup(setup);
        }
    }
    return true;
}

// In a window the effect runs from a copy of its library: a build may then write the library
// in place while it runs, and the next load is a new library to the loader. Replacing, the
// running effect goes only once the copy has proved loadable.
bool PreviewRun::startFromCopy(bool replacing) {
    std::string error;
    std::error_code ignored;
    const std::string copy = freshCopy(mEffect, error);
    if (copy.empty() || !Session::isEffectLibrary(copy, error)) {
        std::filesystem::remove(copy, ignored);
        for (size_t at; !copy.empty() && (at = error.find(copy)) != std::string::npos;) {
            error.replace(at, copy.size(), mEffect);  // the user knows their library's path
        }
        return fail((replacing ? "not reloaded, the running effect stays: " : "") + error);
    }
    mSession.reset();
    const bool started = start(copy);
    std::filesystem::remove(copy, ignored);  // the loader keeps what it mapped
    return started;
}

bool PreviewRun::openOutputs() {
    std::string error;
    if (!mOptions.window || mOptions.outGiven) {
        mPictures.emplace(mOptions.out, mOptions.width, mOptions.height);
        if (!mPictures->open(mOptions.rate, error)) {
            return fail(error);
        }
    }
    const bool recording = !mOptions.record.empty();
    if (recording || !mOptions.compare.empty()) {
        mGolden.emplace(recording ? GoldenFrames::Mode::Record : GoldenFrames::Mode::Compare,
                        recording ? mOptions.record : mOptions.compare, mOptions.out, mOptions.keep,
                        mOptions.tolerance);
        if (!mGolden->open(error)) {
            return fail(error);
        }
    }
    if (mOptions.window) {
        mWatching = mWatch.open(mEffect, mAssets, error);
        if (!mWatching) {
            fail(error + "; the effect is not reloaded when it changes");
        }
    }
    return true;
}

// Frames to draw: as asked, else enough for the script; 0 means until the window closes.
int PreviewRun::frameCount() const {
    if (mOptions.frames > 0) {
        if (mScript.lastFrame() >= mOptions.frames) {
            fprintf(stderr, "qam-preview: script events after frame %d are not reached\n",
                    mOptions.frames - 1);
        }
        return mOptions.frames;
    }
    if (mOptions.window) {
        return 0;
    }
    return std::max(kDefaultFrames, mScript.lastFrame() + 1);
}

bool PreviewRun::drawFrames(Surface& surface) {
    const int frames = frameCount();
    Progress progress(frames);
    // Headless with a fixed clock nothing waits for the timeline: the clock is the timeline.
    const bool paced = mOptions.rate > 0.0 && (mOptions.window || !mOptions.fixedClock);
    const Clock::time_point start = Clock::now();
    size_t next = 0;
    for (int frame = 0; frames == 0 || frame < frames; ++frame) {
        if (paced) {
            std::this_thread::sleep_until(
                start + std::chrono::duration_cast<Clock::duration>(
                            std::chrono::duration<double>(frame / mOptions.rate)));
        }
        if (mWatching && mWatch.settled()) {
            reload(frame);
        }
        if (!surface.poll(*mSession)) {
            break;
        }
        for (; next < mScript.events.size() && mScript.events[next].frame == frame; ++next) {
            mSession->apply(mScript.events[next]);
        }
        if (!drawFrame(frame)) {
            return false;
        }
        surface.present();
        progress.update(frame + 1);
    }
    return true;
}

bool PreviewRun::drawFrame(int frame) {
    if (mOptions.fixedClock) {
        setEffectClock((frame + 1) / mOptions.rate);
    }
    const Clock::time_point before = Clock::now();
    mSession->draw();
    glFinish();
    const Clock::duration drawing = Clock::now() - before;
    mDrawing += drawing;
    ++mFramesDrawn;
    if (mStats) {
        mStats->addFrame(takeGlCounts(), std::chrono::duration<double>(drawing).count());
    }
    Image image;  // read back only when something keeps it
    if (mPictures || (mGolden && mGolden->wants(frame))) {
        image = readFramebuffer(mOptions.width, mOptions.height);
    }
    std::string error;
    if ((mPictures && !mPictures->add(frame, image, error)) ||
        (mGolden && !mGolden->add(frame, image, error))) {
        return fail(error);
    }
    return true;
}

// A new build of the effect, or new assets: the script goes on from this frame.
void PreviewRun::reload(int frame) {
    if (startFromCopy(true)) {
        printf("qam-preview: reloaded %s at frame %d\n", mEffect.c_str(), frame);
        fflush(stdout);
    }
}

int PreviewRun::finish() {
    std::string error;
    if (mPictures && !mPictures->finish(error)) {
        return failed(error);
    }
    if (mPictures) {
        printf("qam-preview: %d frames of %dx%d in %s/\n", mFramesDrawn, mOptions.width,
               mOptions.height, mOptions.out.c_str());
        if (mFramesDrawn > 0) {
            printf("  %s ... %s\n", mPictures->framePath(0).c_str(),
                   mPictures->framePath(mFramesDrawn - 1).c_str());
            printf("  %s\n", mPictures->sheetPath().c_str());
        }
        printf("  %s\n", mPictures->gifPath().c_str());
    }
    const double seconds = std::chrono::duration<double>(mDrawing).count();
    printf("qam-preview: %.1f frames per second (%d frames drawn in %.3f s)\n",
           seconds > 0.0 ? mFramesDrawn / seconds : 0.0, mFramesDrawn, seconds);
    if (mStats) {
        const std::string path = mOptions.out + "/stats.json";
        std::error_code failure;
        std::filesystem::create_directories(mOptions.out, failure);
        mStats->print(stdout);
        if (!mStats->writeJson(path, error)) {
            return failed(error);
        }
        printf("  %s\n", path.c_str());
    }
    if (!mGolden) {
        return 0;
    }
    const std::vector<std::string> failures = mGolden->failures();
    for (const std::string& line : failures) {
        fprintf(stderr, "qam-preview: %s\n", line.c_str());
    }
    if (failures.empty()) {
        printf("qam-preview: golden frames %s in %s/\n",
               mOptions.record.empty() ? "match" : "recorded",
               (mOptions.record.empty() ? mOptions.compare : mOptions.record).c_str());
    }
    return failures.empty() ? 0 : kFailed;
}

}  // namespace qam::preview
