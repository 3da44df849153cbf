#include "app/menus/cooling_menu.h"

#include "tests/app/menus/menu_reading.h"
#include "tests/app/simulated_kestro.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace kestro {
namespace {

using test::findEntry;
using test::linesOf;
using test::pick;
using test::pickEach;
using testing::ElementsAre;

FanTelemetry fan(const std::string& name, double current, double minimum, double maximum) {
    return {.id = 0, .name = name, .currentRPM = current, .targetRPM = 0, .minRPM = minimum, .maxRPM = maximum};
}

struct CoolingMenu : testing::Test, test::SimulatedKestro {
    std::vector<FanTelemetry> fans;
    int settingsOpened = 0;

    Menu menu() {
        return coolingMenu(fans, fanManager, powerManager, [this] { ++settingsOpened; });
    }
};

TEST_F(CoolingMenu, ListsFansProfilesPresetsAndPowerModes) {
    fans = {fan("Left Fan", 2150, 1200, 3900), fan("Right Fan", 1350.9, 1350, 7800)};

    const auto lines = linesOf(menu());

    EXPECT_THAT(lines, ElementsAre("(Cooling & Power Management)", "---", "(Left Fan: 2150 RPM (35%))",
                                   "(Right Fan: 1350 RPM (0%))", "---", "(Fan Performance Profile)", "Silent",
                                   "* Normal (Auto)", "Cool", "Turbo", "Custom Curves", "Curve Presets >", "---",
                                   "(Power Delivery Mode)", "Low Power", "* Balanced (Automatic)", "High Power",
                                   "---", "Cooling Settings..."));
}

TEST_F(CoolingMenu, ReportsAFanlessMachineAsSilent) {
    const auto lines = linesOf(menu());

    EXPECT_EQ(lines[2], "(Acoustics: 0 dB (Fanless Architecture))");
    EXPECT_EQ(lines[3], "---");
}

TEST_F(CoolingMenu, ChecksThePresetInEffect) {
    fanManager.applyPreset(CurvePreset::linearPro);

    const auto lines = linesOf(findEntry(menu(), QStringLiteral("Curve Presets"))->submenu);

    EXPECT_THAT(lines, ElementsAre("Quiet Studio", "Balanced Studio", "Aggressive Cooling", "* Linear Standard"));
}

TEST_F(CoolingMenu, ChecksNoPresetUnlessTheCurvesDriveTheFans) {
    fanManager.applyPreset(CurvePreset::linearPro);
    fanManager.setProfile(FanProfile::normal);

    const auto lines = linesOf(findEntry(menu(), QStringLiteral("Curve Presets"))->submenu);

    EXPECT_THAT(lines, ElementsAre("Quiet Studio", "Balanced Studio", "Aggressive Cooling", "Linear Standard"));
}

TEST_F(CoolingMenu, EveryEntryTakesEffect) {
    pickEach<FanProfile>(menu(), [this](auto value) { EXPECT_EQ(fanManager.currentProfile.get(), value); });
    pickEach<CurvePreset>(menu(), [this](auto value) { EXPECT_EQ(fanManager.activePreset.get(), value); });
    pickEach<SystemPowerMode>(menu(), [this](auto value) {
        mac.runPending();
        EXPECT_EQ(powerManager.currentMode.get(), value);
    });
    EXPECT_TRUE(pick(menu(), QStringLiteral("Cooling Settings...")));
    EXPECT_EQ(settingsOpened, 1);
}

TEST(FanLine, TruncatesSpeedAndPercentage) {
    EXPECT_EQ(fanLine(fan("Fan 1", 2999.99, 1000, 4000)), QStringLiteral("Fan 1: 2999 RPM (66%)"));
}

TEST(FanLine, ClampsThePercentageTo0To100) {
    EXPECT_EQ(fanLine(fan("Fan 1", 9000, 1000, 4000)), QStringLiteral("Fan 1: 9000 RPM (100%)"));
    EXPECT_EQ(fanLine(fan("Fan 1", 500, 1000, 4000)), QStringLiteral("Fan 1: 500 RPM (0%)"));
}

TEST(FanLine, ReadsAnEmptyRangeAsZeroPercent) {
    EXPECT_EQ(fanLine(fan("Fan 1", 1200, 1200, 1200)), QStringLiteral("Fan 1: 1200 RPM (0%)"));
    EXPECT_EQ(fanLine(fan("Fan 1", 1200, 3000, 1200)), QStringLiteral("Fan 1: 1200 RPM (0%)"));
}

TEST(FanLine, ToleratesSpeedsBeyondTheRangeOfIntegers) {
    EXPECT_EQ(fanLine(fan("F", 1e300, 0, 1)), QStringLiteral("F: 1000000000 RPM (100%)"));
    EXPECT_EQ(fanLine(fan("F", -0.5, 0, 1)), QStringLiteral("F: 0 RPM (0%)"));
    EXPECT_EQ(fanLine(fan("F", std::numeric_limits<double>::quiet_NaN(), 0, 1)).left(7),
              QStringLiteral("F: 0 RP"));
}

TEST(FanLine, TreatsTheNameAsPlainText) {
    EXPECT_EQ(fanLine(fan("A&B_c", 100, 0, 200)), QStringLiteral("A&B_c: 100 RPM (50%)"));
}

}  // namespace
}  // namespace kestro
