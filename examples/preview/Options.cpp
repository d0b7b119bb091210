#include "examples/preview/Options.h"

#include <cstdlib>

namespace qam::preview {

const char* const kUsageText =
    "usage: qam-preview [EFFECT.so] [--frames N] [--size WxH] [--bg PNG] [--script FILE]\n"
    "                   [--out DIR] [--assets DIR] [--rate HZ] [--window] [--stats]\n"
    "                   [--fixed-clock] [--record DIR | --compare DIR] [--keep N,N,...]\n"
    "                   [--tolerance N] [--max-differing PERCENT]\n"
    "Hosts an effect library as the Java side does and renders a scripted run:\n"
    "frames, a contact sheet and a GIF in DIR (default out/). See examples/preview/README.md.\n";

namespace {

bool whole(const char* text, int lowest, int highest, int& out) {
    char* end = nullptr;
    const long value = strtol(text, &end, 10);
    if (end == text || *end != '\0' || value < lowest || value > highest) {
        return false;
    }
    out = static_cast<int>(value);
    return true;
}

bool positive(const char* text, int limit, int& out) {
    return whole(text, 1, limit, out);
}

bool number(const std::string& text, double lowest, double highest, double& out) {
    char* end = nullptr;
    out = strtod(text.c_str(), &end);
    return !text.empty() && *end == '\0' && out >= lowest && out <= highest;
}

// "0,15,30": frame numbers from 0.
bool frameList(const std::string& text, std::vector<int>& frames) {
    frames.clear();
    size_t start = 0;
    for (size_t comma = 0; comma != std::string::npos; start = comma + 1) {
        comma = text.find(',', start);
        const std::string item = text.substr(start, comma - start);
        int frame = 0;
        if (!whole(item.c_str(), 0, 1000000, frame)) {
            return false;
        }
        frames.push_back(frame);
    }
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
        } else if (argument == "--stats") {
            options.stats = true;
        } else if (argument == "--fixed-clock") {
            options.fixedClock = true;
        } else if (argument == "--rate") {
            if (!number(value, 0.0, 1000.0, options.rate)) {
                return needsValue("frames per second between 0 (as fast as possible) and 1000");
            }
            ++i;
        } else if (argument == "--keep") {
            if (!frameList(value, options.keep)) {
                return needsValue("frame numbers such as 0,15,30");
            }
            ++i;
        } else if (argument == "--tolerance") {
            if (!whole(value.c_str(), 0, 255, options.tolerance.channel)) {
                return needsValue("a channel difference from 0 to 255");
            }
            ++i;
        } else if (argument == "--max-differing") {
            double percent = 0.0;
            if (!number(value, 0.0, 100.0, percent)) {
                return needsValue("a percentage of the pixels from 0 to 100");
            }
            options.tolerance.share = percent / 100.0;
            ++i;
        } else if (argument == "--record" || argument == "--compare") {
            if (value.empty()) {
                return needsValue("a folder");
            }
            (argument == "--record" ? options.record : options.compare) = value;
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
    if (!options.record.empty() && !options.compare.empty()) {
        error = "--record and --compare: one at a time";
        return false;
    }
    if (!options.record.empty() || !options.compare.empty()) {
        options.fixedClock = true;
    }
    if (options.fixedClock && options.rate == 0.0) {
        error = "a fixed clock needs a rate above 0";
        return false;
    }
    return true;
}

}  // namespace qam::preview
