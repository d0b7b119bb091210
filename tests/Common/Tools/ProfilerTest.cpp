#include "Common/Tools/Profiler.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/LogCapture.h"

namespace {

using vi::Profiler;

class ProfilerTest : public ::testing::Test {
  protected:
    void SetUp() override {
        Profiler::mCount = 0;
        Profiler::clearStatistics();
    }
};

// Before any test resets it: the table as the process starts.
TEST(ProfilerStart, RecordsStartWithoutATime) {
    EXPECT_EQ(Profiler::mCount, 0u);
    for (const Profiler::Record& record : Profiler::mTimeArray) {
        EXPECT_EQ(record.min, 0xFFFFFFFFu);
        EXPECT_EQ(record.max, 0u);
        EXPECT_EQ(record.total, 0u);
        EXPECT_EQ(record.count, 0u);
    }
}

TEST_F(ProfilerTest, IdsRunOutAfterAThousand) {
    qam::test::LogCapture log;
    int user = 0;
    EXPECT_EQ(Profiler::registrateId("first", &user), 0u);
    EXPECT_EQ(Profiler::mTimeArray[0].name, std::string("first"));
    EXPECT_EQ(Profiler::mTimeArray[0].user, &user);
    for (unsigned id = 1; id < 1000; ++id) {
        ASSERT_EQ(Profiler::registrateId("more", nullptr), id);
    }
    EXPECT_TRUE(log.messages().empty());
    EXPECT_EQ(Profiler::registrateId("late", &user), 1000u);
    EXPECT_EQ(Profiler::mCount, 1000u);
    EXPECT_EQ(log.messages(),
              std::vector<std::string>{"Profiler: all 1000 ids are taken, late not registered"});

    // The id handed out past the limit addresses no record: its time is dropped.
    Profiler::addTime(1000, Profiler::getTickCount());
    EXPECT_EQ(log.count("Profiler: id 1000 is past the last record, time dropped"), 1);
}

TEST_F(ProfilerTest, AddTimeKeepsTotalCountAndExtremes) {
    const unsigned id = Profiler::registrateId("frame", nullptr);
    const unsigned now = Profiler::getTickCount();
    Profiler::addTime(id, now - 1000);
    Profiler::addTime(id, now - 3000);
    const Profiler::Record& record = Profiler::mTimeArray[id];
    EXPECT_EQ(record.count, 2u);
    EXPECT_GE(record.min, 1000u);
    EXPECT_GE(record.max, 3000u);
    EXPECT_LT(record.min, record.max);
    EXPECT_EQ(record.total, record.min + record.max);
}

TEST_F(ProfilerTest, AStartInTheFutureWrapsToAHugeTime) {
    const unsigned id = Profiler::registrateId("future", nullptr);
    Profiler::addTime(id, Profiler::getTickCount() + 5000);
    EXPECT_GT(Profiler::mTimeArray[id].max, 0xFFFFFFFFu - 5000u);
}

TEST_F(ProfilerTest, OnlyIdsUpToTheCountAreAccepted) {
    Profiler::registrateId("a", nullptr);
    Profiler::registrateId("b", nullptr);
    const unsigned now = Profiler::getTickCount();
    Profiler::addTime(2, now);  // one past the last registered: still counted
    Profiler::addTime(3, now);
    EXPECT_EQ(Profiler::mTimeArray[2].count, 1u);
    EXPECT_EQ(Profiler::mTimeArray[3].count, 0u);
    EXPECT_EQ(Profiler::mTimeArray[3].min, 0xFFFFFFFFu);
}

TEST_F(ProfilerTest, ClearingResetsTimesButKeepsIds) {
    int user = 0;
    const unsigned id = Profiler::registrateId("kept", &user);
    Profiler::addTime(id, Profiler::getTickCount() - 10);
    {
        qam::test::LogCapture log;
        Profiler::showStatistics();
        EXPECT_EQ(log.text(), "");
    }
    EXPECT_EQ(Profiler::mTimeArray[id].count, 1u);
    Profiler::clearStatistics();
    EXPECT_EQ(Profiler::mCount, 1u);
    EXPECT_EQ(Profiler::mTimeArray[id].name, std::string("kept"));
    EXPECT_EQ(Profiler::mTimeArray[id].user, &user);
    EXPECT_EQ(Profiler::mTimeArray[id].count, 0u);
    EXPECT_EQ(Profiler::mTimeArray[id].total, 0u);
    EXPECT_EQ(Profiler::mTimeArray[id].max, 0u);
    EXPECT_EQ(Profiler::mTimeArray[id].min, 0xFFFFFFFFu);
}

}  // namespace
