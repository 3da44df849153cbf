#include "platform/posix/timer_schedule.h"

#include <gtest/gtest.h>

#include <chrono>

namespace kestro {
namespace {

using namespace std::chrono_literals;

MonotonicTime at(std::chrono::nanoseconds sinceOrigin) {
    return MonotonicTime(sinceOrigin);
}

TEST(FiringTime, OfANewTimerIsOnTheGridIfThatIsHalfAPeriodToAPeriodAway) {
    EXPECT_EQ(firstFiringTime(at(10'300ms), 1000ms), at(11s));
    EXPECT_EQ(firstFiringTime(at(10'300ms), 2000ms), at(12s));
    EXPECT_EQ(firstFiringTime(at(12'500ms), 5000ms), at(15s));
    EXPECT_EQ(firstFiringTime(at(10s), 5000ms), at(15s));
}

TEST(FiringTime, OfANewTimerIsAtMostOnePeriodAway) {
    EXPECT_EQ(firstFiringTime(at(10'500ms + 1ns), 1000ms), at(11'500ms + 1ns));
    EXPECT_EQ(firstFiringTime(at(10'999ms), 1000ms), at(11'999ms));
    EXPECT_EQ(firstFiringTime(at(14'900ms), 3000ms), at(17'900ms));
}

TEST(FiringTime, KeepsToTheGridAfterALateFiring) {
    EXPECT_EQ(nextFiringTime(at(18s), 1000ms), at(19s));
    EXPECT_EQ(nextFiringTime(at(18s + 1ns), 1000ms), at(19s));
    EXPECT_EQ(nextFiringTime(at(18'500ms), 1000ms), at(19s));
    EXPECT_EQ(nextFiringTime(at(18s + 1ms), 1ms), at(18s + 2ms));
}

TEST(FiringTime, IsAtLeastHalfAPeriodAfterThePreviousOne) {
    EXPECT_EQ(nextFiringTime(at(18'500ms + 1ns), 1000ms), at(20s));
    EXPECT_EQ(nextFiringTime(at(18'990ms), 1000ms), at(20s));
    EXPECT_EQ(nextFiringTime(at(10'490ms), 500ms), at(11s));
}

TEST(FiringTime, SkipsMissedFirings) {
    EXPECT_EQ(nextFiringTime(at(17'200ms), 1000ms), at(18s));
}

}  // namespace
}  // namespace kestro
