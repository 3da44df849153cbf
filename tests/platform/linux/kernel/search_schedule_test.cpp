#include "platform/linux/kernel/search_schedule.h"

#include "tests/platform/linux/support.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

using test::ManualClock;
using test::TemporaryTree;
using Due = SearchSchedule::Due;
using namespace std::chrono_literals;

class SearchScheduleTest : public testing::Test {
protected:
    Due dueAfter(std::chrono::milliseconds step) {
        clock.advance(step);
        return schedule.due(clock.monotonicNow());
    }

    TemporaryTree tree;
    ManualClock clock;
    SearchSchedule schedule{tree.root()};
};

TEST_F(SearchScheduleTest, SearchesAtFirstAndThenChecksEveryTenSeconds) {
    EXPECT_EQ(dueAfter(0s), Due::search);
    EXPECT_EQ(dueAfter(9999ms), Due::nothing);
    EXPECT_EQ(dueAfter(1ms), Due::check);
    EXPECT_EQ(dueAfter(1s), Due::nothing);
}

TEST_F(SearchScheduleTest, SearchesWhenADeviceAppears) {
    ASSERT_EQ(dueAfter(0s), Due::search);

    tree.write("/hwmon0", "");

    EXPECT_EQ(dueAfter(5s), Due::nothing);
    EXPECT_EQ(dueAfter(5s), Due::search);
    EXPECT_EQ(dueAfter(10s), Due::check);
}

TEST_F(SearchScheduleTest, SearchesSoonAfterADeviceIsGone) {
    ASSERT_EQ(dueAfter(0s), Due::search);

    schedule.noteGone();

    EXPECT_EQ(dueAfter(1s), Due::nothing);
    EXPECT_EQ(dueAfter(1s), Due::search);
    EXPECT_EQ(dueAfter(2s), Due::nothing);
}

TEST_F(SearchScheduleTest, BacksOffWhileSearchingDoesNotHelp) {
    ASSERT_EQ(dueAfter(0s), Due::search);

    int searches = 0;
    for (int second = 0; second < 600; ++second) {
        schedule.noteGone();
        searches += dueAfter(1s) == Due::search ? 1 : 0;
    }

    EXPECT_LE(searches, 14);
    EXPECT_GE(searches, 10);
}

TEST_F(SearchScheduleTest, SearchesSoonAgainAfterAPeriodWithoutLosses) {
    ASSERT_EQ(dueAfter(0s), Due::search);
    for (int second = 0; second < 120; ++second) {
        schedule.noteGone();
        dueAfter(1s);
    }
    while (dueAfter(10s) != Due::check) {
    }

    schedule.noteGone();
    EXPECT_EQ(dueAfter(1s), Due::search);
    schedule.noteGone();
    EXPECT_EQ(dueAfter(4s), Due::search);
}

}  // namespace
}  // namespace kestro
