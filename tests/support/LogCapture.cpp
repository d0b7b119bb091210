#include "tests/support/LogCapture.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
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
    ssize_t n;
    off_t offset = 0;
    while ((n = pread(mFile, buffer, sizeof buffer, offset)) > 0) {
        content.append(buffer, static_cast<size_t>(n));
        offset += n;
    }
    return content;
}

namespace {

// Splits "<tag> <priority> <date> <time> <pid> <tid> <message>" into a record; false when
// the line is a continuation of the previous message.
bool parseHeader(const std::string& line, LogRecord& record) {
    std::istringstream in(line);
    std::string tag, priority, date, time, pid, tid;
    if (!(in >> tag >> priority >> date >> time >> pid >> tid)) {
        return false;
    }
    const bool looksLikeHeader =
        priority.size() == 1 && std::string("VDIWEF").find(priority[0]) != std::string::npos &&
        date.size() == 5 && date[2] == '-' && time.size() >= 8 && time[2] == ':' &&
        pid.find_first_not_of("0123456789") == std::string::npos &&
        tid.find_first_not_of("0123456789") == std::string::npos;
    if (!looksLikeHeader) {
        return false;
    }
    in.get();  // the one space before the message
    record.tag = tag;
    record.priority = priority[0];
    std::getline(in, record.message);
    return true;
}

}  // namespace

std::vector<LogRecord> LogCapture::records() {
    std::vector<LogRecord> result;
    std::istringstream all(text());
    std::string line;
    while (std::getline(all, line)) {
        LogRecord record;
        if (parseHeader(line, record)) {
            result.push_back(record);
        } else if (!result.empty()) {
            result.back().message += "\n" + line;  // continuation of a multi-line message
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
