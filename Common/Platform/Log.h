#pragma once

#include <string>

// The library's one log channel: Android log, error priority, tag "qam.vi".
namespace qam {

inline constexpr const char* kLogTag = "qam.vi";

void logError(const char* format, ...) __attribute__((format(printf, 1, 2)));

// logError(), unless `object` has logged this `format` before: a guard on bad input says so
// once per object and cause, never on every frame. The objects whose layout effect libraries
// depend on have no room for such flags, so they are kept here, keyed by the object.
void logErrorOnce(const void* object, const char* format, ...)
    __attribute__((format(printf, 2, 3)));
// Called as an object that may have logged dies, so a new one at its address logs afresh.
void forgetLoggedOnce(const void* object);

// The fatal error report: `message`, then where it happened, logged as "Exception: %s";
// the process then exits with `line` as its status.
[[noreturn]] void fatalError(const std::string& message, const char* sourcePath,
                             const char* function, int line);

}  // namespace qam
