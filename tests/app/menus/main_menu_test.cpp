#include "app/menus/main_menu.h"

#include "tests/app/menus/menu_reading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestro {
namespace {

using test::findEntry;
using test::linesOf;
using test::pick;
using test::pickEach;
using testing::ElementsAre;
using testing::StrictMock;

class MockMainMenuActions : public MainMenuActions {
public:
    MOCK_METHOD(void, togglePopoverAction, (), (override));
    MOCK_METHOD(void, toggleDashboard, (), (override));
    MOCK_METHOD(void, toggleFullScreenAction, (), (override));
    MOCK_METHOD(void, openSettingsAction, (), (override));
    MOCK_METHOD(void, togglePin, (), (override));
    MOCK_METHOD(void, toggleKeepAwakeAction, (), (override));
    MOCK_METHOD(void, selectKeepAwakeDuration, (KeepAwakeDuration), (override));
    MOCK_METHOD(void, selectFanProfile, (FanProfile), (override));
    MOCK_METHOD(void, selectCurvePreset, (CurvePreset), (override));
    MOCK_METHOD(void, selectPowerMode, (SystemPowerMode), (override));
    MOCK_METHOD(void, quit, (), (override));
};

struct MainMenu : testing::Test {
    StrictMock<MockMainMenuActions> actions;
    MainMenuState state;

    StatusMenu menu() { return mainMenu(state, actions); }
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
    state.isPinned = true;

    const auto lines = linesOf(menu());

    EXPECT_EQ(lines[6], "Unpin Window [Ctrl+P]");
}

TEST_F(MainMenu, ShowsTheRemainingTimeWhileKeepAwakeIsOn) {
    state.isKeepAwakeActive = true;
    state.remainingTime = QStringLiteral("14m 05s");

    const auto lines = linesOf(menu());

    EXPECT_EQ(lines[8], "Deactivate Keep-Awake (14m 05s)");
}

TEST_F(MainMenu, ChecksTheRunningDuration) {
    state.isKeepAwakeActive = true;
    state.currentDuration = KeepAwakeDuration::hours1;

    const auto lines = linesOf(findEntry(menu(), QStringLiteral("Keep Awake"))->submenu);

    EXPECT_THAT(lines, ElementsAre("Indefinitely", "15 Minutes", "30 Minutes", "* 1 Hour", "2 Hours", "4 Hours"));
}

TEST_F(MainMenu, ChecksTheCurrentDurationEvenWhileKeepAwakeIsOff) {
    state.currentDuration = KeepAwakeDuration::minutes30;

    const auto lines = linesOf(findEntry(menu(), QStringLiteral("Keep Awake"))->submenu);

    EXPECT_THAT(lines, ElementsAre("Indefinitely", "15 Minutes", "* 30 Minutes", "1 Hour", "2 Hours", "4 Hours"));
}

TEST_F(MainMenu, ChecksTheProfileButNoPreset) {
    state.fanProfile = FanProfile::custom;

    const auto lines = linesOf(findEntry(menu(), QStringLiteral("Fan Performance"))->submenu);

    EXPECT_THAT(
        lines, ElementsAre("Silent", "Normal (Auto)", "Cool", "Turbo", "* Custom Curves", "---", "(Curve Presets)",
                           "Quiet Studio", "Balanced Studio", "Aggressive Cooling", "Linear Standard"));
}

TEST_F(MainMenu, ChecksThePowerMode) {
    state.powerMode = SystemPowerMode::highPower;

    const auto lines = linesOf(findEntry(menu(), QStringLiteral("Power Delivery Mode"))->submenu);

    EXPECT_THAT(lines, ElementsAre("Low Power", "Balanced (Automatic)", "* High Power"));
}

TEST_F(MainMenu, CommandsActOnTheApplication) {
    testing::InSequence inSequence;
    EXPECT_CALL(actions, togglePopoverAction());
    EXPECT_CALL(actions, toggleDashboard());
    EXPECT_CALL(actions, toggleFullScreenAction());
    EXPECT_CALL(actions, openSettingsAction());
    EXPECT_CALL(actions, togglePin());
    EXPECT_CALL(actions, toggleKeepAwakeAction());
    EXPECT_CALL(actions, quit());

    for (const char* title : {"Quick Glance Popover", "Full Studio Dashboard", "Toggle Full Screen", "Settings...",
                              "Pin Window on Top", "Activate Indefinitely", "Quit Kestro"}) {
        EXPECT_TRUE(pick(menu(), QString::fromUtf8(title))) << title;
    }
}

TEST_F(MainMenu, EveryChoicePassesItsValue) {
    pickEach<KeepAwakeDuration>(menu(),
                                [this](auto value) { EXPECT_CALL(actions, selectKeepAwakeDuration(value)); });
    pickEach<FanProfile>(menu(), [this](auto value) { EXPECT_CALL(actions, selectFanProfile(value)); });
    pickEach<CurvePreset>(menu(), [this](auto value) { EXPECT_CALL(actions, selectCurvePreset(value)); });
    pickEach<SystemPowerMode>(menu(), [this](auto value) { EXPECT_CALL(actions, selectPowerMode(value)); });
}

TEST_F(MainMenu, HeadersCannotBePicked) {
    EXPECT_FALSE(pick(menu(), QStringLiteral("Kestro Telemetry")));
    EXPECT_FALSE(pick(menu(), QStringLiteral("Curve Presets")));
}

}  // namespace
}  // namespace kestro
