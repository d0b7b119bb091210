// qam-preview: hosts an effect library through the same entry points as the Java side and
// renders a scripted run, headless into pictures or live in an X11 window.
#include <GLES2/gl2.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "Common/Platform/AssetDirectory.h"
#include "Common/Tools/File.h"
#include "examples/common/Png.h"
#include "examples/preview/HeadlessSurface.h"
#include "examples/preview/Options.h"
#include "examples/preview/PreviewConfig.h"
#include "examples/preview/Progress.h"
#include "examples/preview/Resources.h"
#include "examples/preview/RunOutput.h"
#include "examples/preview/Script.h"
#include "examples/preview/Session.h"
#include "examples/preview/WindowSurface.h"

namespace {

using namespace qam::preview;
using Clock = std::chrono::steady_clock;

constexpr int kDefaultFrames = 60;
constexpr int kFailed = 1;
constexpr int kBadUsage = 2;

int fail(const std::string& message) {
    fprintf(stderr, "qam-preview: %s\n", message.c_str());
    return kFailed;
}

std::string folderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

// Frames to draw: as asked, else enough for the script; 0 means until the window closes.
int frameCount(const Options& options, const Script& script) {
    if (options.frames > 0) {
        if (script.lastFrame() >= options.frames) {
            fprintf(stderr, "qam-preview: script events after frame %d are not reached\n",
                    options.frames - 1);
        }
        return options.frames;
    }
    if (options.window) {
        return 0;
    }
    return std::max(kDefaultFrames, script.lastFrame() + 1);
}

// The timeline: input, one draw and the read-back per frame. Returns the frames drawn, or
// -1 after a failure it has reported.
int drawFrames(const Options& options, const Script& script, Surface& surface, Session& session,
               RunOutput* output, Clock::duration& drawing) {
    const int frames = frameCount(options, script);
    Progress progress(frames);
    const Clock::time_point start = Clock::now();
    size_t next = 0;
    int frame = 0;
    for (; frames == 0 || frame < frames; ++frame) {
        if (options.rate > 0.0) {
            std::this_thread::sleep_until(start +
                                          std::chrono::duration_cast<Clock::duration>(
                                              std::chrono::duration<double>(frame / options.rate)));
        }
        if (!surface.poll(session)) {
            break;
        }
        for (; next < script.events.size() && script.events[next].frame == frame; ++next) {
            session.apply(script.events[next]);
        }
        const Clock::time_point before = Clock::now();
        session.draw();
        glFinish();
        drawing += Clock::now() - before;
        std::string error;
        if (output != nullptr &&
            !output->add(frame, qam::readFramebuffer(options.width, options.height), error)) {
            fail(error);
            return -1;
        }
        surface.present();
        progress.update(frame + 1);
    }
    return frame;
}

void report(const Options& options, const RunOutput* output, int frames, Clock::duration drawing) {
    if (output != nullptr) {
        printf("qam-preview: %d frames of %dx%d in %s/\n", frames, options.width, options.height,
               options.out.c_str());
        if (frames > 0) {
            printf("  %s ... %s\n", output->framePath(0).c_str(),
                   output->framePath(frames - 1).c_str());
            printf("  %s\n", output->sheetPath().c_str());
        }
        printf("  %s\n", output->gifPath().c_str());
    }
    const double seconds = std::chrono::duration<double>(drawing).count();
    printf("qam-preview: %.1f frames per second (%d frames drawn in %.3f s)\n",
           seconds > 0.0 ? frames / seconds : 0.0, frames, seconds);
}

// Loads the effect on `surface` and runs it; the exit status.
int host(const Options& options, const std::string& effect, const Script& script,
         const qam::Image& background, Surface& surface, const std::string& assets) {
    Session session;
    std::string error;
    if (!session.loadEffect(effect, error)) {
        return fail(error);
    }
    // As the Java side does: textures after init, whose first step drops static pixels.
    session.init(options.width, options.height);
    if (!loadResources(session, background, assets)) {
        return kFailed;
    }
    std::optional<RunOutput> output;
    if (!options.window || options.outGiven) {
        output.emplace(options.out, options.width, options.height);
        if (!output->open(options.rate, error)) {
            return fail(error);
        }
    }
    RunOutput* pictures = output ? &*output : nullptr;
    Clock::duration drawing{};
    const int frames = drawFrames(options, script, surface, session, pictures, drawing);
    if (frames < 0) {
        return kFailed;
    }
    if (output && !output->finish(error)) {
        return fail(error);
    }
    report(options, pictures, frames, drawing);
    return 0;
}

int run(const Options& options, const std::string& effect, const Script& script,
        const qam::Image& background) {
    std::unique_ptr<Surface> surface;
    if (options.window) {
        std::string error;
        surface = WindowSurface::open(options.width, options.height, error);
        if (!surface) {
            return fail(error);
        }
    } else {
        surface = std::make_unique<HeadlessSurface>(options.width, options.height);
    }
    const std::string assets = options.assets.empty() ? folderOf(effect) : options.assets;
    vi::File::getAssetManager() = vi::AssetDirectory::open(assets);
    const int status = host(options, effect, script, background, *surface, assets);
    vi::AssetDirectory::close(vi::File::getAssetManager());
    vi::File::getAssetManager() = nullptr;
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    std::string error;
    if (!parseOptions(argc, argv, options, error)) {
        fprintf(stderr, "qam-preview: %s\n%s", error.c_str(), kUsageText);
        return kBadUsage;
    }
    if (options.help) {
        printf("%s", kUsageText);
        return 0;
    }
    const std::string effect = options.effect.empty() ? kDefaultEffect : options.effect;
    if (effect.empty()) {
        fprintf(stderr, "qam-preview: name an effect library: this build has no sample\n%s",
                kUsageText);
        return kBadUsage;
    }

    Script script;
    if (!options.script.empty()) {
        std::vector<std::string> errors;
        script = readScript(options.script, errors);
        for (const std::string& line : errors) {
            fprintf(stderr, "%s\n", line.c_str());
        }
        if (!errors.empty()) {
            return kFailed;
        }
    } else if (!options.window) {
        script = defaultSwipe(options.frames > 0 ? options.frames : kDefaultFrames);
    }

    qam::Image background;
    if (options.background.empty()) {
        background = defaultBackground(options.width, options.height);
    } else if (!qam::readPng(options.background, background)) {
        return kFailed;
    }
    return run(options, effect, script, background);
}
