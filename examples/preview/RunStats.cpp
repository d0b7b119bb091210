#include "examples/preview/RunStats.h"

#include <algorithm>
#include <cinttypes>

namespace qam::preview {
namespace {

// Nearest rank: the smallest time with at least `percent` of the times at or below it.
double percentile(const std::vector<double>& sorted, size_t percent) {
    const size_t rank = (percent * sorted.size() + 99) / 100;
    return sorted[std::max<size_t>(rank, 1) - 1];
}

std::string milliseconds(double value) {
    char text[32];
    snprintf(text, sizeof text, "%.3f", value);
    return text;
}

std::string countersJson(const GlCounts& counts) {
    std::string json;
    for (const GlCounter& counter : kGlCounters) {
        json += std::string(json.empty() ? "" : ", ") + "\"" + counter.name +
                "\": " + std::to_string(counts.*counter.field);
    }
    return json;
}

}  // namespace

void RunStats::addFrame(const GlCounts& counts, double seconds) {
    mFrames.push_back({counts, seconds});
}

GlCounts RunStats::total() const {
    GlCounts sum;
    for (const Frame& frame : mFrames) {
        for (const GlCounter& counter : kGlCounters) {
            sum.*counter.field += frame.counts.*counter.field;
        }
    }
    return sum;
}

RunStats::FrameTimes RunStats::frameTimes() const {
    if (mFrames.empty()) {
        return {};
    }
    std::vector<double> sorted;
    for (const Frame& frame : mFrames) {
        sorted.push_back(frame.seconds * 1000.0);
    }
    std::sort(sorted.begin(), sorted.end());
    return {percentile(sorted, 50), percentile(sorted, 95), sorted.back()};
}

void RunStats::print(FILE* out) const {
    const GlCounts sum = total();
    fprintf(out, "%-18s %12s %12s %12s %12s\n", "GL work", "setup", "total", "mean/frame",
            "max/frame");
    for (const GlCounter& counter : kGlCounters) {
        uint64_t most = 0;
        for (const Frame& frame : mFrames) {
            most = std::max(most, frame.counts.*counter.field);
        }
        const double mean = mFrames.empty() ? 0.0 : double(sum.*counter.field) / mFrames.size();
        fprintf(out, "%-18s %12" PRIu64 " %12" PRIu64 " %12.1f %12" PRIu64 "\n", counter.name,
                mSetup.*counter.field, sum.*counter.field, mean, most);
    }
    const FrameTimes times = frameTimes();
    fprintf(out, "frame time: median %.2f ms, 95th percentile %.2f ms, max %.2f ms\n",
            times.medianMs, times.p95Ms, times.maxMs);
}

bool RunStats::writeJson(const std::string& path, std::string& error) const {
    const FrameTimes times = frameTimes();
    std::string json = "{\n  \"frames\": " + std::to_string(mFrames.size()) +
                       ",\n  \"frameTimeMs\": {\"median\": " + milliseconds(times.medianMs) +
                       ", \"p95\": " + milliseconds(times.p95Ms) +
                       ", \"max\": " + milliseconds(times.maxMs) + "},\n  \"setup\": {" +
                       countersJson(mSetup) + "},\n  \"total\": {" + countersJson(total()) +
                       "},\n  \"perFrame\": [";
    for (size_t i = 0; i < mFrames.size(); ++i) {
        json += std::string(i == 0 ? "\n" : ",\n") + "    {\"frame\": " + std::to_string(i) +
                ", \"timeMs\": " + milliseconds(mFrames[i].seconds * 1000.0) + ", " +
                countersJson(mFrames[i].counts) + "}";
    }
    json += "\n  ]\n}\n";
    FILE* file = fopen(path.c_str(), "w");
    const bool written = file != nullptr && fputs(json.c_str(), file) >= 0;
    if (file == nullptr || fclose(file) != 0 || !written) {
        error = path + ": cannot write the statistics";
        return false;
    }
    return true;
}

}  // namespace qam::preview
