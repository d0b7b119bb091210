#pragma once

#include <string>

// The library's one log channel: Android log, error priority, tag "qam.vi".
namespace qam {

inline constexpr const char* kLogTag = "qam.vi";

void logError(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The fatal error report: `message`, then where it happened, logged as "Exception: %s";
// the process then exits with `line` as its status.
[[noreturn]] void fatalError(const std::string& message, const char* sourcePath,
                             const char* function, int line);

}  // namespace qam
