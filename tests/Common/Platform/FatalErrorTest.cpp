#include <gtest/gtest.h>

#include "Common/Platform/Log.h"
#include "tests/support/LogCapture.h"

namespace {

TEST(FatalErrorDeathTest, ReportsLocationAndExitsWithTheLine) {
    EXPECT_EXIT(qam::fatalError("\"broken\"\n", "Common/Some/Where", "doIt", 46),
                ::testing::ExitedWithCode(46),
                "qam.vi E .* Exception: \"broken\"\nIn file : \"Common/Some/Where\"\n"
                "In function : \"doIt\"\nIn line : 46");
}

TEST(LogTest, WritesOneErrorLineUnderTheLibraryTag) {
    qam::test::LogCapture log;
    qam::logError("File empty: %s", "x.bin");
    const auto records = log.records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].tag, "qam.vi");
    EXPECT_EQ(records[0].priority, 'E');
    EXPECT_EQ(records[0].message, "File empty: x.bin");
}

}  // namespace
