#include "Common/Platform/Log.h"

#include <android/log.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace qam {

void logError(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    __android_log_vprint(ANDROID_LOG_ERROR, kLogTag, format, arguments);
    va_end(arguments);
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
