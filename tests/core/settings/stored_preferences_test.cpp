#include "tests/core/settings/user_settings_fixture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {
namespace {

using Fixture = UserSettingsFixture;
using Modules = std::vector<MenubarModuleType>;

TEST(UserSettings, ReadsAListOfModulesInOrder) {
    Fixture fixture;
    fixture.defaults.storeData("kestro.activeMenubarModules", R"(["cpuUsage", "memory"])");

    EXPECT_EQ(fixture.settings().activeMenubarModules.get(),
              (Modules{MenubarModuleType::cpuUsage, MenubarModuleType::memory}));
}

TEST(UserSettings, KeepsAnEmptyListOfModules) {
    Fixture fixture;
    fixture.defaults.storeData("kestro.activeMenubarModules", "[]");

    EXPECT_TRUE(fixture.settings().activeMenubarModules.get().empty());
}

TEST(UserSettings, RejectsAListWithOneUnknownModule) {
    Fixture fixture;
    fixture.defaults.storeData("kestro.activeMenubarModules", R"(["cpuUsage", "gpuUsage"])");

    EXPECT_EQ(fixture.settings().activeMenubarModules.get().size(), 3U);
    EXPECT_EQ(fixture.defaults.dataText("kestro.activeMenubarModules"), R"(["cpuUsage", "gpuUsage"])");
    EXPECT_TRUE(fixture.defaults.writes.empty());
}

TEST(UserSettings, ReadsAChoiceOnlyByItsLabel) {
    Fixture byLabel;
    byLabel.defaults.storeData("kestro.temperatureUnit", "\"Fahrenheit (°F)\"");
    Fixture byCaseName;
    byCaseName.defaults.storeData("kestro.temperatureUnit", "\"fahrenheit\"");

    EXPECT_EQ(byLabel.settings().temperatureUnit.get(), TemperatureUnit::fahrenheit);
    EXPECT_EQ(byCaseName.settings().temperatureUnit.get(), TemperatureUnit::celsius);
}

TEST(UserSettings, ReadsAnEscapedLabel) {
    Fixture fixture;
    fixture.defaults.storeData("kestro.menubarDisplayMode", "\"Triple (RAM \\/ CPU \\/ Fan)\"");
    fixture.defaults.storeData("kestro.menubarDelimiter", "\" \\u00b7 \"");

    EXPECT_EQ(fixture.settings().menubarDisplayMode.get(), MenubarDisplayMode::tripleGlance);
    EXPECT_EQ(fixture.settings().menubarDelimiter.get(), MenubarDelimiter::middleDot);
}

TEST(UserSettings, FallsBackOnCorruptChoices) {
    const std::string deeplyNested(20'000, '[');
    for (const std::string_view damaged :
         {"", "\"", "Thermal Infrared", "\"Thermal Infrared\" x", "1", "null", "true", "[\"Thermal Infrared\"]",
          "{\"a\":1}", "\"\xff\xfe\"", deeplyNested.c_str()}) {
        Fixture fixture;
        fixture.defaults.storeData("kestro.themePalette", damaged);

        EXPECT_EQ(fixture.settings().themePalette.get(), ThemePalette::cryogenic) << damaged.substr(0, 40);
    }
}

TEST(UserSettings, FallsBackOnDataThatContinuesAfterAZeroByte) {
    constexpr std::string_view choice("\"Thermal Infrared\"\0x", 20);
    constexpr std::string_view list("[]\0", 3);
    Fixture fixture;
    fixture.defaults.storeData("kestro.themePalette", choice);
    fixture.defaults.storeData("kestro.activeMenubarModules", list);

    EXPECT_EQ(fixture.settings().themePalette.get(), ThemePalette::cryogenic);
    EXPECT_EQ(fixture.settings().activeMenubarModules.get().size(), 3U);
}

TEST(UserSettings, FallsBackOnUnknownKeepAwakeLabels) {
    Fixture fixture;
    fixture.defaults.storeData("kestro.keepAwakeTargetMode", "\"Display Only\"");
    fixture.defaults.storeData("kestro.defaultKeepAwakeDuration", "\"3 Hours\"");

    EXPECT_EQ(fixture.settings().keepAwakeTargetMode.get(), KeepAwakeTarget::displayAndSystem);
    EXPECT_EQ(fixture.settings().defaultKeepAwakeDuration.get(), KeepAwakeDuration::indefinite);
    EXPECT_EQ(fixture.defaults.dataText("kestro.keepAwakeTargetMode"), "\"Display Only\"");
    EXPECT_EQ(fixture.defaults.dataText("kestro.defaultKeepAwakeDuration"), "\"3 Hours\"");
}

TEST(UserSettings, DoesNotAcceptTextAsData) {
    Fixture fixture;
    fixture.defaults.store("kestro.themePalette", std::string("\"Thermal Infrared\""));
    fixture.defaults.store("kestro.activeMenubarModules", std::string("[]"));

    EXPECT_EQ(fixture.settings().themePalette.get(), ThemePalette::cryogenic);
    EXPECT_EQ(fixture.settings().activeMenubarModules.get().size(), 3U);
}

TEST(UserSettings, AcceptsOnlyFlagsForFlags) {
    for (const PreferenceValue& wrong : std::vector<PreferenceValue>{std::int64_t{1}, 1.0, std::string("true"),
                                                                     PreferenceData{'t', 'r', 'u', 'e'}}) {
        Fixture fixture;
        fixture.defaults.store("kestro.isPinned", wrong);

        EXPECT_FALSE(fixture.settings().isPinned.get());
    }
}

TEST(UserSettings, ReadsStoredFlags) {
    Fixture fixture;
    fixture.defaults.store("kestro.isPinned", true);
    fixture.defaults.store("kestro.showCompute", false);

    EXPECT_TRUE(fixture.settings().isPinned.get());
    EXPECT_FALSE(fixture.settings().showCompute.get());
}

TEST(UserSettings, AcceptsWholeNumbersOfEitherKindForIntegers) {
    Fixture integer;
    integer.defaults.store("kestro.processCountLimit", std::int64_t{8});
    Fixture whole;
    whole.defaults.store("kestro.processCountLimit", 10.0);

    EXPECT_EQ(integer.settings().processCountLimit.get(), 8);
    EXPECT_EQ(whole.settings().processCountLimit.get(), 10);
}

TEST(UserSettings, RejectsNonIntegersForIntegers) {
    for (const PreferenceValue& wrong : std::vector<PreferenceValue>{
             true, 8.5, 0x1p63, -1e300, std::numeric_limits<double>::quiet_NaN(),
             std::numeric_limits<double>::infinity(), std::string("8"), PreferenceData{'8'}}) {
        Fixture fixture;
        fixture.defaults.store("kestro.processCountLimit", wrong);

        EXPECT_EQ(fixture.settings().processCountLimit.get(), 6);
    }
}

TEST(UserSettings, AcceptsIntegersForDoubles) {
    Fixture fixture;
    fixture.defaults.store("kestro.customFanRPM", std::int64_t{4200});
    fixture.defaults.store("kestro.rampSmoothingSeconds", 1.5);

    EXPECT_EQ(fixture.settings().customFanRPM.get(), 4200.0);
    EXPECT_EQ(fixture.settings().rampSmoothingSeconds.get(), 1.5);
}

TEST(UserSettings, RejectsIntegersThatADoubleCannotRepresent) {
    constexpr std::int64_t largestExact = std::int64_t{1} << 53;
    Fixture exact;
    exact.defaults.store("kestro.customFanRPM", -largestExact);
    Fixture inexact;
    inexact.defaults.store("kestro.customFanRPM", largestExact + 1);
    inexact.defaults.store("kestro.temperatureDeadband", std::numeric_limits<std::int64_t>::min());

    EXPECT_EQ(exact.settings().customFanRPM.get(), -0x1p53);
    EXPECT_EQ(inexact.settings().customFanRPM.get(), 3500.0);
    EXPECT_EQ(inexact.settings().temperatureDeadband.get(), 2.0);
}

TEST(UserSettings, RejectsFlagsAndTextsForDoubles) {
    for (const PreferenceValue& wrong :
         std::vector<PreferenceValue>{true, std::string("4200"), PreferenceData{'4', '2'}}) {
        Fixture fixture;
        fixture.defaults.store("kestro.customFanRPM", wrong);

        EXPECT_EQ(fixture.settings().customFanRPM.get(), 3500.0);
    }
}

TEST(UserSettings, UsesTheDefaultForACurveThatLacksAField) {
    Fixture fixture;
    const std::string_view incomplete =
        R"({"sensorSource":"Battery Pack","curveShape":"Linear Proportional","lowTemp":40,"highTemp":70,)"
        R"("minRPM":1000,"maxRPM":5000,"isFixedRPM":false,"fixedRPM":2000,"acousticCeilingEnabled":true})";
    fixture.defaults.storeData("kestro.leftFanCurve", incomplete);

    EXPECT_EQ(fixture.settings().leftFanCurve.get(), FanCurveConfig::leftDefault());
    EXPECT_EQ(fixture.defaults.dataText("kestro.leftFanCurve"), incomplete);
}

}  // namespace
}  // namespace kestro
