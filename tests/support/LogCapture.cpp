#include "tests/support/LogCapture.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <regex>
#include <sstream>

namespace qam::test {

LogCapture::LogCapture() {
    fflush(stderr);
    char path[] = "/tmp/qam-log-XXXXXX";
    mFile = mkstemp(path);
    unlink(path);
    mSavedStderr = dup(STDERR_FILENO);
    dup2(mFile, STDERR_FILENO);
}

LogCapture::~LogCapture() {
    fflush(stderr);
    dup2(mSavedStderr, STDERR_FILENO);
    close(mSavedStderr);
    close(mFile);
}

std::string LogCapture::text() {
    fflush(stderr);
    std::string content;
    char buffer[4096];
    for (ssize_t n; (n = pread(mFile, buffer, sizeof buffer, off_t(content.size()))) > 0;) {
        content.append(buffer, static_cast<size_t>(n));
    }
    return content;
}

std::vector<LogRecord> LogCapture::records() {
    // "<tag> <priority> <MM-DD> <hh:mm:ss[.mmm]> <pid> <tid> <message>"; any other line
    // continues the message before it.
    static const std::regex header(
        R"((\S+) ([VDIWEF]) \d\d-\d\d \d\d:\d\d:\d\d\S* +\d+ +\d+ (.*))");
    std::vector<LogRecord> result;
    std::istringstream all(text());
    std::smatch parts;
    for (std::string line; std::getline(all, line);) {
        if (std::regex_match(line, parts, header)) {
            result.push_back({parts[1], parts[2].str()[0], parts[3]});
        } else if (!result.empty()) {
            result.back().message += "\n" + line;
        }
    }
    return result;
}

std::vector<std::string> LogCapture::messages() {
    std::vector<std::string> result;
    for (const LogRecord& record : records()) {
        if (record.tag == "qam.vi" && record.priority == 'E') {
            result.push_back(record.message);
        }
    }
    return result;
}

int LogCapture::count(const std::string& message) {
    const std::vector<std::string> all = messages();
    return static_cast<int>(std::count(all.begin(), all.end(), message));
}

}  // namespace qam::test
