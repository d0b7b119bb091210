#include "examples/preview/Options.h"

#include <cstdlib>

namespace qam::preview {

const char* const kUsageText =
    "usage: qam-preview [EFFECT.so] [--frames N] [--size WxH] [--bg PNG] [--script FILE]\n"
    "                   [--out DIR] [--assets DIR] [--rate HZ] [--window]\n"
    "Hosts an effect library as the Java side does and renders a scripted run:\n"
    "frames, a contact sheet and a GIF in DIR (default out/). See examples/preview/README.md.\n";

namespace {

bool positive(const char* text, int limit, int& out) {
    char* end = nullptr;
    const long value = strtol(text, &end, 10);
    if (end == text || *end != '\0' || value < 1 || value > limit) {
        return false;
    }
    out = static_cast<int>(value);
    return true;
}

bool size(const std::string& text, int& width, int& height) {
    const size_t x = text.find('x');
    return x != std::string::npos && positive(text.substr(0, x).c_str(), 8192, width) &&
           positive(text.substr(x + 1).c_str(), 8192, height);
}

}  // namespace

bool parseOptions(int argc, char** argv, Options& options, std::string& error) {
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        const bool hasValue = i + 1 < argc;
        const std::string value = hasValue ? argv[i + 1] : "";
        auto needsValue = [&](const char* what) {
            error = argument + " needs " + what;
            return false;
        };
        if (argument == "--help" || argument == "-h") {
            options.help = true;
        } else if (argument == "--window") {
            options.window = true;
        } else if (argument == "--frames") {
            if (!hasValue || !positive(value.c_str(), 1000000, options.frames)) {
                return needsValue("a frame count of 1 or more");
            }
            ++i;
        } else if (argument == "--size") {
            if (!hasValue || !size(value, options.width, options.height)) {
                return needsValue("a size WxH such as 360x640");
            }
            ++i;
        } else if (argument == "--rate") {
            char* end = nullptr;
            options.rate = hasValue ? strtod(value.c_str(), &end) : -1.0;
            if (!hasValue || *end != '\0' || !(options.rate >= 0.0) || options.rate > 1000.0) {
                return needsValue("frames per second between 0 (as fast as possible) and 1000");
            }
            ++i;
        } else if (argument == "--bg" || argument == "--script" || argument == "--out" ||
                   argument == "--assets") {
            if (!hasValue || value.empty()) {
                return needsValue(argument == "--out" || argument == "--assets" ? "a folder"
                                                                                : "a file");
            }
            std::string& target = argument == "--bg"       ? options.background
                                  : argument == "--script" ? options.script
                                  : argument == "--out"    ? options.out
                                                           : options.assets;
            target = value;
            options.outGiven = options.outGiven || argument == "--out";
            ++i;
        } else if (argument.rfind("-", 0) == 0) {
            error = "unknown option " + argument;
            return false;
        } else if (options.effect.empty()) {
            options.effect = argument;
        } else {
            error = "one effect library only, got " + options.effect + " and " + argument;
            return false;
        }
    }
    return true;
}

}  // namespace qam::preview
