#include "core/settings/user_settings.h"

#include "tests/core/settings/user_settings_fixture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <variant>
#include <vector>

namespace kestro {
namespace {

using Fixture = UserSettingsFixture;
using Modules = std::vector<MenubarModuleType>;

TEST(UserSettings, GivesANewUserTheDefaultChoices) {
    Fixture fresh;
    const auto& settings = fresh.settings();

    EXPECT_EQ(settings.selectedSettingsTab.get(), SettingsTab::menubar);
    EXPECT_EQ(settings.themePalette.get(), ThemePalette::cryogenic);
    EXPECT_EQ(settings.temperatureUnit.get(), TemperatureUnit::celsius);
    EXPECT_EQ(settings.fanSpeedUnit.get(), FanSpeedUnit::kRPM);
    EXPECT_EQ(settings.menubarDisplayMode.get(), MenubarDisplayMode::memoryAndFan);
    EXPECT_EQ(settings.menubarIconStyle.get(), MenubarIconStyle::iconsAndText);
    EXPECT_EQ(settings.pollingProfile.get(), PollingProfile::balanced);
    EXPECT_EQ(settings.halftoneIntensity.get(), HalftoneIntensity::standard);
    EXPECT_EQ(settings.halftonePattern.get(), HalftonePatternStyle::band);
    EXPECT_EQ(settings.glassMaterial.get(), GlassMaterialStyle::deepFrosted);
    EXPECT_EQ(settings.processSortMetric.get(), ProcessSortMetric::cpu);
    EXPECT_EQ(settings.activeMenubarModules.get(),
              (Modules{MenubarModuleType::appIcon, MenubarModuleType::memory, MenubarModuleType::fanSpeed}));
    EXPECT_EQ(settings.menubarDelimiter.get(), MenubarDelimiter::middleDot);
    EXPECT_EQ(settings.keepAwakeTargetMode.get(), KeepAwakeTarget::displayAndSystem);
    EXPECT_EQ(settings.defaultKeepAwakeDuration.get(), KeepAwakeDuration::indefinite);
    EXPECT_EQ(settings.fanProfile.get(), FanProfile::normal);
}

TEST(UserSettings, GivesANewUserTheDefaultFlagsAndNumbers) {
    Fixture fresh;
    const auto& settings = fresh.settings();

    EXPECT_TRUE(settings.progressiveBlurFade.get());
    EXPECT_TRUE(settings.showCompute.get());
    EXPECT_TRUE(settings.showCooling.get());
    EXPECT_TRUE(settings.showMemory.get());
    EXPECT_TRUE(settings.showNetwork.get());
    EXPECT_TRUE(settings.showTopProcesses.get());
    EXPECT_EQ(settings.processCountLimit.get(), 6);
    EXPECT_FALSE(settings.isPinned.get());
    EXPECT_EQ(settings.sparklineDurationSeconds.get(), 30);
    EXPECT_TRUE(settings.showMenubarLabels.get());
    EXPECT_TRUE(settings.showDedicatedKeepAwakeItem.get());
    EXPECT_FALSE(settings.showDedicatedFanItem.get());
    EXPECT_TRUE(settings.keepAwakeAutoDisableOnBattery.get());
    EXPECT_EQ(settings.keepAwakeBatteryThreshold.get(), 20.0);
    EXPECT_EQ(settings.customFanRPM.get(), 3500.0);
    EXPECT_TRUE(settings.isFansLinked.get());
    EXPECT_EQ(settings.rampSmoothingSeconds.get(), 3.0);
    EXPECT_EQ(settings.temperatureDeadband.get(), 2.0);
    EXPECT_EQ(settings.selectedFanIndex.get(), 0);
}

TEST(UserSettings, GivesTheTwoFansDifferentDefaultRanges) {
    Fixture fresh;
    const FanCurveConfig left{
        SensorSource::averageSoC, CurveShape::sCurve, 48.0, 84.0, 1250.0, 7300.0, false, 2400.0, false, 6000.0};
    auto right = left;
    right.minRPM = 1350.0;
    right.maxRPM = 7800.0;

    EXPECT_EQ(fresh.settings().leftFanCurve.get(), left);
    EXPECT_EQ(fresh.settings().rightFanCurve.get(), right);
}

TEST(UserSettings, ReadsEachKeyOnceInOrderAndWritesNoneAtConstruction) {
    Fixture fresh;
    const std::vector<std::string> keys{
        "kestro.selectedSettingsTab",
        "kestro.themePalette",
        "kestro.temperatureUnit",
        "kestro.fanSpeedUnit",
        "kestro.menubarDisplayMode",
        "kestro.menubarIconStyle",
        "kestro.pollingProfile",
        "kestro.halftoneIntensity",
        "kestro.halftonePattern",
        "kestro.glassMaterial",
        "kestro.progressiveBlurFade",
        "kestro.showCompute",
        "kestro.showCooling",
        "kestro.showMemory",
        "kestro.showNetwork",
        "kestro.showTopProcesses",
        "kestro.processSortMetric",
        "kestro.processCountLimit",
        "kestro.isPinned",
        "kestro.sparklineDuration",
        "kestro.activeMenubarModules",
        "kestro.menubarDelimiter",
        "kestro.showMenubarLabels",
        "kestro.showDedicatedKeepAwakeItem",
        "kestro.showDedicatedFanItem",
        "kestro.keepAwakeTargetMode",
        "kestro.defaultKeepAwakeDuration",
        "kestro.keepAwakeAutoDisableOnBattery",
        "kestro.keepAwakeBatteryThreshold",
        "kestro.fanProfile",
        "kestro.customFanRPM",
        "kestro.leftFanCurve",
        "kestro.rightFanCurve",
        "kestro.isFansLinked",
        "kestro.rampSmoothingSeconds",
        "kestro.temperatureDeadband",
        "kestro.selectedFanIndex",
    };

    fresh.settings();

    EXPECT_EQ(fresh.defaults.reads, keys);
    EXPECT_TRUE(fresh.defaults.writes.empty());
}

TEST(UserSettings, WritesEachKindInItsStoredForm) {
    Fixture fixture;
    auto& settings = fixture.settings();

    settings.temperatureUnit.set(TemperatureUnit::celsius);
    settings.menubarDelimiter.set(MenubarDelimiter::space);
    settings.activeMenubarModules.set({MenubarModuleType::keepAwake, MenubarModuleType::appIcon});
    settings.isPinned.set(true);
    settings.sparklineDurationSeconds.set(60);
    settings.keepAwakeBatteryThreshold.set(15);

    EXPECT_EQ(fixture.defaults.dataText("kestro.temperatureUnit"), "\"Celsius (°C)\"");
    EXPECT_EQ(fixture.defaults.dataText("kestro.menubarDelimiter"), "\"  \"");
    EXPECT_EQ(fixture.defaults.dataText("kestro.activeMenubarModules"), R"(["keepAwake","appIcon"])");
    EXPECT_EQ(fixture.defaults.values.at("kestro.isPinned"), PreferenceValue(true));
    EXPECT_EQ(fixture.defaults.values.at("kestro.sparklineDuration"), PreferenceValue(std::int64_t{60}));
    EXPECT_EQ(fixture.defaults.values.at("kestro.keepAwakeBatteryThreshold"), PreferenceValue(15.0));
    EXPECT_EQ(fixture.defaults.writes.size(), 6U);
}

TEST(UserSettings, WritesACurveWithItsTenFieldsInOrder) {
    Fixture fixture;

    fixture.settings().leftFanCurve.set(FanCurveConfig::leftDefault());

    EXPECT_EQ(fixture.defaults.dataText("kestro.leftFanCurve"),
              R"({"sensorSource":"Average SoC Temp","curveShape":"Acoustic S-Curve","lowTemp":48.0,)"
              R"("highTemp":84.0,"minRPM":1250.0,"maxRPM":7300.0,"isFixedRPM":false,"fixedRPM":2400.0,)"
              R"("acousticCeilingEnabled":false,"acousticCeilingRPM":6000.0})");
}

TEST(UserSettings, SkipsWritingACurveThatJsonCannotRepresent) {
    Fixture fixture;
    auto curve = FanCurveConfig::leftDefault();
    curve.highTemp = std::numeric_limits<double>::infinity();

    fixture.settings().leftFanCurve.set(curve);

    EXPECT_TRUE(fixture.defaults.writes.empty());
    EXPECT_EQ(fixture.settings().leftFanCurve.get(), curve);
}

TEST(UserSettings, ClampsNothing) {
    Fixture fixture;

    fixture.settings().processCountLimit.set(0);
    fixture.settings().processCountLimit.set(-7);

    EXPECT_EQ(fixture.defaults.writes,
              (std::vector<RecordingUserDefaults::Write>{{"kestro.processCountLimit", std::int64_t{0}},
                                                         {"kestro.processCountLimit", std::int64_t{-7}}}));
    EXPECT_EQ(UserSettings(fixture.defaults).processCountLimit.get(), -7);
}

TEST(UserSettings, AlsoAnnouncesPublishesAndWritesAnEqualValue) {
    Fixture fixture;
    auto& settings = fixture.settings();
    int announced = 0;
    std::vector<bool> published;
    const auto first = settings.subscribeWillChange([&] { ++announced; });
    const auto second = settings.isPinned.subscribe([&](const bool& pinned) { published.push_back(pinned); });

    settings.isPinned.set(true);
    settings.isPinned.set(true);

    EXPECT_EQ(announced, 2);
    EXPECT_EQ(published, (std::vector{true, true}));
    EXPECT_EQ(fixture.defaults.writes.size(), 2U);
}

TEST(UserSettings, AnnouncesBeforeTheChangeAndWritesAfterPublishing) {
    Fixture fixture;
    auto& settings = fixture.settings();
    std::vector<std::string> order;
    const auto first = settings.subscribeWillChange(
        [&] { order.emplace_back(settings.isPinned.get() ? "announced late" : "announced"); });
    const auto second = settings.isPinned.subscribe([&](const bool&) {
        order.emplace_back(fixture.defaults.writes.empty() ? "published" : "published late");
    });

    settings.isPinned.set(true);

    EXPECT_EQ(order, (std::vector<std::string>{"announced", "published"}));
    EXPECT_EQ(fixture.defaults.writes.size(), 1U);
}

TEST(UserSettings, StoresTheNewestValueWhenASubscriberAssignsAgain) {
    Fixture fixture;
    auto& settings = fixture.settings();
    const auto subscription = settings.processCountLimit.subscribe([&](const std::int64_t& limit) {
        if (limit > 10) {
            settings.processCountLimit.set(10);
        }
    });

    settings.processCountLimit.set(99);

    EXPECT_EQ(fixture.defaults.values.at("kestro.processCountLimit"), PreferenceValue(std::int64_t{10}));
    EXPECT_EQ(fixture.defaults.writes.back().second, PreferenceValue(std::int64_t{10}));
}

/// Assigns `value` and expects a store created afterwards to read it back.
template <typename T>
void expectSurvivesARestart(Setting<T> UserSettings::*setting, T value) {
    RecordingUserDefaults defaults;
    UserSettings before(defaults);

    (before.*setting).set(value);

    const UserSettings after(defaults);
    EXPECT_EQ((after.*setting).get(), value) << (after.*setting).key();
}

template <ClosedEnumeration E>
void expectEveryCaseSurvivesARestart(Setting<E> UserSettings::*setting) {
    for (const E value : allCases<E>()) {
        expectSurvivesARestart(setting, value);
    }
}

TEST(UserSettings, ReadsBackEveryChoice) {
    expectEveryCaseSurvivesARestart(&UserSettings::selectedSettingsTab);
    expectEveryCaseSurvivesARestart(&UserSettings::themePalette);
    expectEveryCaseSurvivesARestart(&UserSettings::temperatureUnit);
    expectEveryCaseSurvivesARestart(&UserSettings::fanSpeedUnit);
    expectEveryCaseSurvivesARestart(&UserSettings::menubarDisplayMode);
    expectEveryCaseSurvivesARestart(&UserSettings::menubarIconStyle);
    expectEveryCaseSurvivesARestart(&UserSettings::pollingProfile);
    expectEveryCaseSurvivesARestart(&UserSettings::halftoneIntensity);
    expectEveryCaseSurvivesARestart(&UserSettings::halftonePattern);
    expectEveryCaseSurvivesARestart(&UserSettings::glassMaterial);
    expectEveryCaseSurvivesARestart(&UserSettings::processSortMetric);
    expectEveryCaseSurvivesARestart(&UserSettings::menubarDelimiter);
    expectEveryCaseSurvivesARestart(&UserSettings::keepAwakeTargetMode);
    expectEveryCaseSurvivesARestart(&UserSettings::defaultKeepAwakeDuration);
    expectEveryCaseSurvivesARestart(&UserSettings::fanProfile);
}

TEST(UserSettings, ReadsBackEveryListNumberAndCurve) {
    const auto every = allCases<MenubarModuleType>();
    auto curve = FanCurveConfig::rightDefault();
    curve.lowTemp = 41.7;
    curve.isFixedRPM = true;
    curve.curveShape = CurveShape::stepped;
    curve.sensorSource = SensorSource::batteryPack;

    expectSurvivesARestart(&UserSettings::activeMenubarModules, Modules(every.rbegin(), every.rend()));
    expectSurvivesARestart(&UserSettings::processCountLimit, std::numeric_limits<std::int64_t>::min());
    expectSurvivesARestart(&UserSettings::temperatureDeadband, 0.1);
    expectSurvivesARestart(&UserSettings::rightFanCurve, curve);
    expectSurvivesARestart(&UserSettings::isFansLinked, false);
}

}  // namespace
}  // namespace kestro
