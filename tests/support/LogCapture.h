#pragma once

#include <string>
#include <vector>

namespace qam::test {

// One record written by liblog: "<tag> <priority> <date> <time> <pid> <tid> <message>".
struct LogRecord {
    std::string tag;
    char priority;
    std::string message;  // may span several lines
};

// Captures everything written to stderr (where liblog prints on Linux) while alive.
class LogCapture {
  public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    // The log records so far, in order.
    std::vector<LogRecord> records();
    // The messages logged under "qam.vi" at error priority, in order.
    std::vector<std::string> messages();
    // How many of those messages equal `message`.
    int count(const std::string& message);
    // Everything written to stderr so far.
    std::string text();

  private:
    int mSavedStderr;
    int mFile;
};

}  // namespace qam::test
