#include "app/menus/main_menu.h"

#include "tests/app/menus/menu_reading.h"
#include "tests/app/simulated_kestro.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using test::findEntry;
using test::linesOf;
using test::pick;
using test::pickEach;
using testing::ElementsAre;
using testing::StrictMock;

class MockMenuCommands : public MenuCommands {
public:
    MOCK_METHOD(void, togglePopover, (), (override));
    MOCK_METHOD(void, toggleDashboard, (), (override));
    MOCK_METHOD(void, toggleFullScreenAction, (), (override));
    MOCK_METHOD(void, showSettings, (), (override));
    MOCK_METHOD(void, togglePin, (), (override));
    MOCK_METHOD(void, quit, (), (override));
};

struct MainMenu : testing::Test, test::SimulatedKestro {
    StrictMock<MockMenuCommands> commands;

    Menu menu() { return mainMenu(services(), commands); }
};

TEST_F(MainMenu, ListsItsFourteenRowsInOrder) {
    const auto lines = linesOf(menu());

    EXPECT_THAT(lines,
                ElementsAre("(Kestro Telemetry)", "---", "Quick Glance Popover", "Full Studio Dashboard [Ctrl+D]",
                            "Toggle Full Screen [Ctrl+Meta+F]", "Settings... [Ctrl+,]",
                            "Pin Window on Top [Ctrl+P]", "---", "Activate Indefinitely", "---", "Keep Awake >",
                            "Fan Performance >", "Power Delivery Mode >", "Quit Kestro [Ctrl+Q]"));
}

TEST_F(MainMenu, OffersToUnpinAPinnedWindow) {
    settings.isPinned.set(true);

    const auto lines = linesOf(menu());

    EXPECT_EQ(lines[6], "Unpin Window [Ctrl+P]");
}

TEST_F(MainMenu, ShowsTheRemainingTimeWhileKeepAwakeIsOn) {
    keepAwake.activate(KeepAwakeDuration::minutes15);
    mac.advance(55s);

    const auto lines = linesOf(menu());

    EXPECT_EQ(lines[8], "Deactivate Keep-Awake (14m 05s)");
}

TEST_F(MainMenu, ChecksTheRunningDuration) {
    keepAwake.activate(KeepAwakeDuration::hours1);

    const auto lines = linesOf(findEntry(menu(), QStringLiteral("Keep Awake"))->submenu);

    EXPECT_THAT(lines, ElementsAre("Indefinitely", "15 Minutes", "30 Minutes", "* 1 Hour", "2 Hours", "4 Hours"));
}

TEST_F(MainMenu, ChecksTheCurrentDurationEvenWhileKeepAwakeIsOff) {
    keepAwake.activate(KeepAwakeDuration::minutes30);
    keepAwake.deactivate();

    const auto lines = linesOf(findEntry(menu(), QStringLiteral("Keep Awake"))->submenu);

    EXPECT_THAT(lines, ElementsAre("Indefinitely", "15 Minutes", "* 30 Minutes", "1 Hour", "2 Hours", "4 Hours"));
}

TEST_F(MainMenu, ChecksTheProfileButNoPreset) {
    fanManager.applyPreset(CurvePreset::linearPro);

    const auto lines = linesOf(findEntry(menu(), QStringLiteral("Fan Performance"))->submenu);

    EXPECT_THAT(
        lines, ElementsAre("Silent", "Normal (Auto)", "Cool", "Turbo", "* Custom Curves", "---", "(Curve Presets)",
                           "Quiet Studio", "Balanced Studio", "Aggressive Cooling", "Linear Standard"));
}

TEST_F(MainMenu, ChecksThePowerMode) {
    powerManager.setPowerMode(SystemPowerMode::highPower);
    mac.runPending();

    const auto lines = linesOf(findEntry(menu(), QStringLiteral("Power Delivery Mode"))->submenu);

    EXPECT_THAT(lines, ElementsAre("Low Power", "Balanced (Automatic)", "* High Power"));
}

TEST_F(MainMenu, CommandsActOnTheApplication) {
    testing::InSequence inSequence;
    EXPECT_CALL(commands, togglePopover());
    EXPECT_CALL(commands, toggleDashboard());
    EXPECT_CALL(commands, toggleFullScreenAction());
    EXPECT_CALL(commands, showSettings());
    EXPECT_CALL(commands, togglePin());
    EXPECT_CALL(commands, quit());

    for (const char* title : {"Quick Glance Popover", "Full Studio Dashboard", "Toggle Full Screen", "Settings...",
                              "Pin Window on Top", "Quit Kestro"}) {
        EXPECT_TRUE(pick(menu(), QString::fromUtf8(title))) << title;
    }
}

TEST_F(MainMenu, TogglesKeepAwake) {
    EXPECT_TRUE(pick(menu(), QStringLiteral("Activate Indefinitely")));
    EXPECT_TRUE(keepAwake.isActive.get());

    EXPECT_TRUE(pick(menu(), QStringLiteral("Deactivate Keep-Awake (Active (∞))")));
    EXPECT_FALSE(keepAwake.isActive.get());
}

TEST_F(MainMenu, EveryChoiceTakesEffect) {
    pickEach<KeepAwakeDuration>(menu(), [this](auto value) {
        EXPECT_TRUE(keepAwake.isActive.get());
        EXPECT_EQ(keepAwake.currentDuration.get(), value);
    });
    pickEach<FanProfile>(menu(), [this](auto value) { EXPECT_EQ(fanManager.currentProfile.get(), value); });
    pickEach<CurvePreset>(menu(), [this](auto value) { EXPECT_EQ(fanManager.activePreset.get(), value); });
    pickEach<SystemPowerMode>(menu(), [this](auto value) {
        mac.runPending();
        EXPECT_EQ(powerManager.currentMode.get(), value);
    });
}

TEST_F(MainMenu, HeadersCannotBePicked) {
    EXPECT_FALSE(pick(menu(), QStringLiteral("Kestro Telemetry")));
    EXPECT_FALSE(pick(menu(), QStringLiteral("Curve Presets")));
}

}  // namespace
}  // namespace kestro
