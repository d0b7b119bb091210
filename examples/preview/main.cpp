// qam-preview: hosts an effect library through the same entry points as the Java side and
// renders a scripted run, headless into pictures or live in an X11 window.
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Common/Platform/AssetDirectory.h"
#include "Common/Tools/File.h"
#include "examples/common/Png.h"
#include "examples/preview/HeadlessSurface.h"
#include "examples/preview/Options.h"
#include "examples/preview/PreviewConfig.h"
#include "examples/preview/PreviewRun.h"
#include "examples/preview/Resources.h"
#include "examples/preview/Script.h"
#include "examples/preview/WindowSurface.h"

namespace {

using namespace qam::preview;

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
    const int status = PreviewRun(options, script, background, effect, assets).execute(*surface);
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
