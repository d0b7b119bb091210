#include "Common/Tools/Profiler.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/LogCapture.h"

namespace {

using vi::Profiler;

TEST(ProfilerTest, RecordsKeepCountTotalAndExtremesForAThousandIdsUntilCleared) {
    Profiler::mCount = 0;
    Profiler::clearStatistics();
    qam::test::LogCapture log;
    int user = 0;
    EXPECT_EQ(Profiler::registrateId("frame", &user), 0u);
    const Profiler::Record& record = Profiler::mTimeArray[0];
    const unsigned now = Profiler::getTickCount();
    Profiler::addTime(0, now - 1000);
    Profiler::addTime(0, now - 3000);
    EXPECT_EQ(record.count, 2u);
    EXPECT_GE(record.min, 1000u);
    EXPECT_GE(record.max, 3000u);
    EXPECT_EQ(record.total, record.min + record.max);
    Profiler::addTime(0, Profiler::getTickCount() + 5000);  // in the future: wraps
    EXPECT_GT(record.max, 0xFFFFFFFFu - 5000u);
    Profiler::addTime(1, now);  // one past the last registered: still counted
    Profiler::addTime(2, now);
    EXPECT_EQ(std::pair(Profiler::mTimeArray[1].count, Profiler::mTimeArray[2].count),
              std::pair(1u, 0u));

    Profiler::clearStatistics();
    EXPECT_EQ(Profiler::mCount, 1u);
    EXPECT_EQ(record.name, std::string("frame"));
    EXPECT_EQ(record.user, &user);
    EXPECT_EQ(record.count + record.total + record.max, 0u);
    EXPECT_EQ(record.min, 0xFFFFFFFFu);

    for (unsigned id = 1; id < 1000; ++id) {
        ASSERT_EQ(Profiler::registrateId("more", nullptr), id);
    }
    EXPECT_TRUE(log.messages().empty());
    EXPECT_EQ(Profiler::registrateId("late", &user), 1000u);
    EXPECT_EQ(Profiler::mCount, 1000u);
    Profiler::addTime(1000, now);  // addresses no record: dropped
    EXPECT_EQ(log.messages().size(), 2u);
}

}  // namespace
