#pragma once

#include <array>

#include "Common/Platform/Export.h"

namespace vi {

// A fixed table of named timing counters in milliseconds. Register an id once, then add
// the time since a tick taken with getTickCount().
class TALVEQAM_EXPORT Profiler {
  public:
    static constexpr unsigned kMaxIds = 1000;
    static constexpr unsigned kNoTime = 0xFFFFFFFFu;

    struct Record {
        unsigned max;
        unsigned total;
        unsigned min;  // kNoTime while no time was added
        unsigned count;
        void* user;
        const char* name;  // not copied
    };

    // The next free id, or kMaxIds (registering nothing) once all are taken.
    static unsigned registrateId(const char* name, void* user);
    // Wall-clock milliseconds, wrapping in 32 bits.
    static unsigned getTickCount();
    // Adds the time since `startTick` to the record of `id`. The id one past the last
    // registered one is accepted too.
    static void addTime(unsigned id, unsigned startTick);
    // Prints nothing; only counts its calls.
    static void showStatistics();
    // Resets every record's times; names, user pointers and mCount stay.
    static void clearStatistics();

    static unsigned mCount;
    static std::array<Record, kMaxIds> mTimeArray;
};

}  // namespace vi
