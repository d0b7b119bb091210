#include "Common/Tools/Profiler.h"

#include <sys/time.h>

#include "Common/Platform/Log.h"

namespace vi {
namespace {

unsigned gShowCount = 0;

constexpr std::array<Profiler::Record, Profiler::kMaxIds> emptyRecords() {
    std::array<Profiler::Record, Profiler::kMaxIds> records{};
    for (unsigned i = 0; i < Profiler::kMaxIds; ++i) {
        records[i].min = Profiler::kNoTime;
    }
    return records;
}

}  // namespace

unsigned Profiler::mCount = 0;
// Constant-initialised, so valid before any static constructor runs.
std::array<Profiler::Record, Profiler::kMaxIds> Profiler::mTimeArray = emptyRecords();

unsigned Profiler::registrateId(const char* name, void* user) {
    if (mCount >= kMaxIds) {
        return kMaxIds;
    }
    mTimeArray[mCount].name = name;
    mTimeArray[mCount].user = user;
    return mCount++;
}

unsigned Profiler::getTickCount() {
    timeval now;
    gettimeofday(&now, nullptr);
    return static_cast<unsigned>(now.tv_sec) * 1000u + static_cast<unsigned>(now.tv_usec / 1000);
}

void Profiler::addTime(unsigned id, unsigned startTick) {
    if (id > mCount) {
        return;
    }
    if (id >= kMaxIds) {
        qam::logErrorOnce(&mTimeArray, "Profiler: id %u is past the last record, time dropped", id);
        return;
    }
    const unsigned elapsed = getTickCount() - startTick;
    Record& record = mTimeArray[id];
    record.total += elapsed;
    record.count += 1;
    if (elapsed > record.max) {
        record.max = elapsed;
    }
    if (elapsed < record.min) {
        record.min = elapsed;
    }
}

void Profiler::showStatistics() {
    ++gShowCount;
}

void Profiler::clearStatistics() {
    for (Record& record : mTimeArray) {
        record.max = 0;
        record.total = 0;
        record.count = 0;
        record.min = kNoTime;
    }
}

}  // namespace vi
