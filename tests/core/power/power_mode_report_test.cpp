#include "core/power/power_mode_report.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(PowerModeReport, ReadsTheValueOfAPowermodeLine) {
    EXPECT_EQ(powerModeOfReport("powermode 0\n"), SystemPowerMode::balanced);
    EXPECT_EQ(powerModeOfReport("powermode 1\n"), SystemPowerMode::lowPower);
    EXPECT_EQ(powerModeOfReport("powermode 2\n"), SystemPowerMode::highPower);
}

TEST(PowerModeReport, IgnoresBlanksAroundTheWords) {
    EXPECT_EQ(powerModeOfReport("Currently in use:\n standby 1\n   powermode  2\n"), SystemPowerMode::highPower);
    EXPECT_EQ(powerModeOfReport("\tpowermode\t\t1 \r\n"), SystemPowerMode::lowPower);
    EXPECT_EQ(powerModeOfReport("powermode 2"), SystemPowerMode::highPower);
}

TEST(PowerModeReport, TreatsAnUnknownValueAsBalanced) {
    EXPECT_EQ(powerModeOfReport("powermode 3\n"), SystemPowerMode::balanced);
    EXPECT_EQ(powerModeOfReport("powermode 22\n"), SystemPowerMode::balanced);
    EXPECT_EQ(powerModeOfReport("powermode 3\npowermode 1\n"), SystemPowerMode::balanced);
}

TEST(PowerModeReport, HonoursALowpowermodeLineOnlyWhenItIsOn) {
    EXPECT_EQ(powerModeOfReport(" lowpowermode 0\n"), SystemPowerMode::balanced);
    EXPECT_EQ(powerModeOfReport(" lowpowermode 1\n"), SystemPowerMode::lowPower);
    EXPECT_EQ(powerModeOfReport(" lowpowermode\n"), SystemPowerMode::balanced);
    EXPECT_EQ(powerModeOfReport(" lowpowermode 0\n powermode 2\n"), SystemPowerMode::highPower);
}

TEST(PowerModeReport, UsesTheFirstDecisiveLine) {
    EXPECT_EQ(powerModeOfReport("powermode 0\nlowpowermode 1\n"), SystemPowerMode::balanced);
    EXPECT_EQ(powerModeOfReport("lowpowermode 1\npowermode 2\n"), SystemPowerMode::lowPower);
}

TEST(PowerModeReport, SkipsAPowermodeLineWithoutAValue) {
    EXPECT_EQ(powerModeOfReport("powermode\nlowpowermode 1\n"), SystemPowerMode::lowPower);
    EXPECT_EQ(powerModeOfReport("powermode2\npowermode 1\n"), SystemPowerMode::lowPower);
}

TEST(PowerModeReport, MatchesOnlyTheStartOfALine) {
    EXPECT_EQ(powerModeOfReport("the powermode 2\n"), SystemPowerMode::balanced);
    EXPECT_EQ(powerModeOfReport("powermode(battery) 2\n"), SystemPowerMode::highPower);
}

TEST(PowerModeReport, TreatsAnEmptyOrUnreadableReportAsBalanced) {
    EXPECT_EQ(powerModeOfReport(""), SystemPowerMode::balanced);
    EXPECT_EQ(powerModeOfReport("\n\n\r\n"), SystemPowerMode::balanced);
    EXPECT_EQ(powerModeOfReport("powermode 2\n\xFF"), SystemPowerMode::balanced);
}

}  // namespace
}  // namespace kestro
