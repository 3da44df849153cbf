#include "tests/app/app_delegate_fixture.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <vector>

namespace kestro {
namespace {

using namespace std::chrono_literals;

using AppDelegateReadout = test::AppDelegateFixture;

TEST_F(AppDelegateReadout, FollowsTheEngine) {
    launch();

    mac.advance(2s);

    EXPECT_TRUE(shown().title.text.startsWith(QStringLiteral(" RAM ")));
    EXPECT_TRUE(shown().title.text.endsWith(QStringLiteral("L:1420 R:1460")));
}

TEST_F(AppDelegateReadout, FollowsTheSettings) {
    launch();
    mac.advance(2s);

    settings.activeMenubarModules.set({MenubarModuleType::fanProfile, MenubarModuleType::keepAwake});
    settings.menubarDelimiter.set(MenubarDelimiter::pipe);
    settle();

    EXPECT_EQ(shown().title.text, QStringLiteral("⚡ AUTO | ☕ OFF"));
    EXPECT_EQ(shown().symbol, std::nullopt);
}

TEST_F(AppDelegateReadout, FollowsTheManagers) {
    settings.activeMenubarModules.set(
        {MenubarModuleType::fanProfile, MenubarModuleType::powerMode, MenubarModuleType::keepAwake});
    launch();

    fanManager.setProfile(FanProfile::turbo);
    keepAwake.activate(KeepAwakeDuration::indefinite);
    settle();

    EXPECT_EQ(shown().title.text, QStringLiteral("🔥 TURBO · ⚡ AUTO · ☕ ON"));
}

TEST_F(AppDelegateReadout, MeasuresTheLoadThatItShows) {
    launch();
    settings.activeMenubarModules.set({MenubarModuleType::cpuUsage});
    EXPECT_EQ(shown().title.text, QStringLiteral(" RAM -- · 0 RPM"));

    mac.advance(4s);
    settle();

    EXPECT_EQ(shown().title.text, QStringLiteral("CPU 0%"));
    EXPECT_EQ(mac.machHost.processorInfoCalls(), 2);
}

TEST_F(AppDelegateReadout, MeasuresItsClustersFromTheStart) {
    settings.activeMenubarModules.set({MenubarModuleType::memory, MenubarModuleType::cpuClusters});

    launch();
    mac.advance(4s);

    EXPECT_EQ(mac.machHost.processorInfoCalls(), 2);
}

TEST_F(AppDelegateReadout, StopsMeasuringTheLoadWithoutItsLastModule) {
    settings.activeMenubarModules.set({MenubarModuleType::cpuUsage, MenubarModuleType::cpuClusters});
    launch();
    settings.activeMenubarModules.set({MenubarModuleType::cpuClusters});
    mac.advance(2s);
    EXPECT_EQ(mac.machHost.processorInfoCalls(), 1);

    settings.activeMenubarModules.set({MenubarModuleType::memory});
    mac.advance(60s);

    EXPECT_EQ(mac.machHost.processorInfoCalls(), 1);
}

TEST_F(AppDelegateReadout, StaysFreshAfterTheLastWindowCloses) {
    settings.activeMenubarModules.set({MenubarModuleType::thermal, MenubarModuleType::battery,
                                       MenubarModuleType::diskSpace, MenubarModuleType::network});
    launch();
    delegate.showDashboard();
    mac.advance(10s);
    delegate.hideDashboard();

    mac.hidEventSystem.sensors = {{"PMU tdie1", 71.0}};
    mac.powerSources.setBattery(43, false);
    mac.fileSystem.root = {1000, 2'000'000'000, 1'200'000'000};
    mac.networkInterfaces.entries = {SimulatedNetworkInterfaces::link("en0", 1'000'000'000, 1'000'000'000)};
    mac.advance(34s);

    EXPECT_EQ(shown().title.text, QStringLiteral("71°C · 43% · SSD 1.2T · ↓0 ↑0"));
}

TEST_F(AppDelegateReadout, LeavesTheStoredDisplayModeUnchanged) {
    launch();
    settings.menubarDisplayMode.set(MenubarDisplayMode::memoryOnly);
    const auto writes = mac.userDefaults.writes("kestro.menubarDisplayMode");

    settings.activeMenubarModules.set({MenubarModuleType::cpuUsage});
    mac.advance(4s);
    settings.activeMenubarModules.set({MenubarModuleType::memory});
    mac.advance(4s);

    EXPECT_EQ(settings.menubarDisplayMode.get(), MenubarDisplayMode::memoryOnly);
    EXPECT_EQ(mac.userDefaults.writes("kestro.menubarDisplayMode"), writes);
}

TEST_F(AppDelegateReadout, PaintsTheLoadThatIsMeasuredForItsModule) {
    settings.activeMenubarModules.set({MenubarModuleType::cpuUsage});
    launch();

    mac.advance(4s);

    ASSERT_TRUE(shown().glance);
    EXPECT_TRUE(shown().glance->lowerPercent);
}

TEST_F(AppDelegateReadout, FollowsAFanThatAppearsLate) {
    const float one[] = {1400};
    const float two[] = {1400, 1450};
    mac.smc.setFans(one);
    fanManager.refreshHardware();
    launch();

    mac.smc.setFans(two);
    mac.advance(4s);

    EXPECT_EQ(fanManager.fanCount.get(), 2);
}

TEST_F(AppDelegateReadout, FollowsAReplacedFan) {
    launch();
    ASSERT_EQ(fanManager.currentFans.get()[0].maxRPM, 7300);

    mac.smc.setFloat("F0Mx", 6100);
    mac.advance(4s);

    EXPECT_EQ(fanManager.currentFans.get()[0].maxRPM, 6100);
}

TEST_F(AppDelegateReadout, KeepsAnEditedCurveWhenAFanAppearsLate) {
    const float one[] = {1400};
    const float two[] = {1400, 1450};
    mac.smc.setFans(one);
    fanManager.refreshHardware();
    launch();
    auto edited = fanManager.leftCurve.get();
    edited.minRPM = 1000;
    edited.maxRPM = 5000;
    fanManager.updateCurve(0, edited);

    mac.smc.setFans(two);
    mac.advance(4s);

    EXPECT_EQ(fanManager.fanCount.get(), 2);
    EXPECT_EQ(fanManager.leftCurve.get(), edited);
    EXPECT_EQ(settings.leftFanCurve.get(), edited);
}

TEST_F(AppDelegateReadout, IsComposedOncePerTick) {
    launch();
    mac.advance(2s);
    const int before = bar.item(mainItem).contentsSet;
    mac.machHost.statistics.activeCount += 200'000;
    mac.smc.setFloat("F0Ac", 1800);

    mac.advance(2s);

    EXPECT_EQ(bar.item(mainItem).contentsSet - before, 1);
}

TEST_F(AppDelegateReadout, DoesNotTouchTheItemWhileNothingChanges) {
    launch();
    mac.advance(2s);
    const int before = bar.item(mainItem).contentsSet;

    mac.advance(60s);

    EXPECT_EQ(bar.item(mainItem).contentsSet, before);
}

TEST_F(AppDelegateReadout, PaintsLoadsForHostsWithoutText) {
    launch();

    mac.advance(2s);

    ASSERT_TRUE(shown().glance);
    EXPECT_EQ(shown().glance->upperPercent, static_cast<int>(engine.memory.get().usedPercentage()));
    EXPECT_TRUE(shown().toolTip.contains(QStringLiteral("RAM")));
}

TEST_F(AppDelegateReadout, PaintsNoUnmeasuredProcessorLoad) {
    launch();
    mac.advance(2s);
    EXPECT_FALSE(shown().glance->lowerPercent);

    settings.menubarDisplayMode.set(MenubarDisplayMode::cpuOnly);
    mac.advance(2s);
    EXPECT_FALSE(shown().glance->lowerPercent) << "one reading is no load";
    mac.advance(2s);
    EXPECT_TRUE(shown().glance->lowerPercent);
}

TEST_F(AppDelegateReadout, KeepsTheRowsOfItsIconWhileAWindowOpens) {
    launch();
    mac.advance(2s);
    click();

    mac.advance(1s);

    ASSERT_TRUE(engine.isUIActive.get());
    ASSERT_TRUE(shown().glance);
    EXPECT_FALSE(shown().glance->lowerPercent);
}

TEST_F(AppDelegateReadout, IsOnlyTheSymbolOnEveryHostWithoutModules) {
    settings.menubarDisplayMode.set(MenubarDisplayMode::cpuOnly);
    launch();
    mac.advance(4s);
    ASSERT_TRUE(shown().glance);

    for (const auto& modules : {std::vector<MenubarModuleType>{}, std::vector{MenubarModuleType::appIcon}}) {
        settings.activeMenubarModules.set(modules);
        settle();

        EXPECT_FALSE(shown().glance);
        ASSERT_TRUE(shown().symbol);
        EXPECT_EQ(shown().symbol->name, QStringLiteral("waveform.path.ecg"));
        EXPECT_EQ(shown().title.text, QString());
        EXPECT_EQ(shown().toolTip, QStringLiteral("Kestro"));
    }
}

TEST_F(AppDelegateReadout, LeavesTheIconBareWhenTheUserWantsIt) {
    settings.menubarIconStyle.set(MenubarIconStyle::iconOnly);
    launch();

    mac.advance(2s);

    EXPECT_FALSE(shown().glance);
    EXPECT_EQ(shown().title.text, QString());
}

}  // namespace
}  // namespace kestro
