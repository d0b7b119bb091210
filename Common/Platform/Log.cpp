#include "Common/Platform/Log.h"

#include <android/log.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <set>
#include <utility>

namespace qam {

void logError(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    __android_log_vprint(ANDROID_LOG_ERROR, kLogTag, format, arguments);
    va_end(arguments);
}

namespace {

// (object, format) pairs already logged; the format's address stands for the cause.
using LoggedOnce = std::set<std::pair<const void*, const char*>>;

// Never destroyed: objects in statics (the pending holder, for one) forget their keys as the
// process exits, after this file's own statics may have gone.
std::mutex& loggedOnceMutex() {
    static std::mutex* const mutex = new std::mutex;
    return *mutex;
}
LoggedOnce& loggedOnce() {
    static LoggedOnce* const pairs = new LoggedOnce;
    return *pairs;
}

}  // namespace

void logErrorOnce(const void* object, const char* format, ...) {
    {
        const std::lock_guard<std::mutex> lock(loggedOnceMutex());
        if (!loggedOnce().emplace(object, format).second) {
            return;
        }
    }
    va_list arguments;
    va_start(arguments, format);
    __android_log_vprint(ANDROID_LOG_ERROR, kLogTag, format, arguments);
    va_end(arguments);
}

void forgetLoggedOnce(const void* object) {
    const std::lock_guard<std::mutex> lock(loggedOnceMutex());
    LoggedOnce& pairs = loggedOnce();
    const auto first = pairs.lower_bound({object, nullptr});
    auto last = first;
    while (last != pairs.end() && last->first == object) {
        ++last;
    }
    pairs.erase(first, last);
}

void fatalError(const std::string& message, const char* sourcePath, const char* function,
                int line) {
    std::string report;
    report.reserve(8192);
    report += message;
    report += "In file : \"";
    report += sourcePath;
    report += "\"\nIn function : \"";
    report += function;
    report += "\"\nIn line : ";
    char number[32];
    snprintf(number, sizeof number, "%d", line);
    report += number;
    __android_log_print(ANDROID_LOG_ERROR, kLogTag, "Exception: %s", report.c_str());
    exit(line);
}

}  // namespace qam
