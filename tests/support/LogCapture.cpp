#include "tests/support/LogCapture.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <regex>

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
    ssize_t n;
    off_t offset = 0;
    while ((n = pread(mFile, buffer, sizeof buffer, offset)) > 0) {
        content.append(buffer, static_cast<size_t>(n));
        offset += n;
    }
    return content;
}

std::vector<LogRecord> LogCapture::records() {
    static const std::regex header(
        R"(^(\S+) ([VDIWEF]) \d\d-\d\d \d\d:\d\d:\d\d(?:\.\d+)? +\d+ +\d+ (.*)$)");
    std::vector<LogRecord> result;
    const std::string all = text();
    size_t start = 0;
    while (start < all.size()) {
        size_t end = all.find('\n', start);
        if (end == std::string::npos) {
            end = all.size();
        }
        const std::string line = all.substr(start, end - start);
        std::smatch match;
        if (std::regex_match(line, match, header)) {
            result.push_back({match[1], match[2].str()[0], match[3]});
        } else if (!result.empty()) {
            result.back().message += "\n" + line;  // continuation of a multi-line message
        }
        start = end + 1;
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
