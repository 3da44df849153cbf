#include "app/menus/keep_awake_menu.h"

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

class MockKeepAwakeMenuActions : public KeepAwakeMenuActions {
public:
    MOCK_METHOD(void, toggleAction, (), (override));
    MOCK_METHOD(void, selectDuration, (KeepAwakeDuration), (override));
    MOCK_METHOD(void, selectTarget, (KeepAwakeTarget), (override));
    MOCK_METHOD(void, openSettingsAction, (), (override));
};

struct KeepAwakeMenu : testing::Test {
    StrictMock<MockKeepAwakeMenuActions> actions;
    KeepAwakeMenuState state;

    StatusMenu menu() { return keepAwakeMenu(state, actions); }
};

TEST_F(KeepAwakeMenu, ListsItsEightRowsWhileInactive) {
    const auto lines = linesOf(menu());

    EXPECT_THAT(lines, ElementsAre("(Keep-Awake: Inactive)", "---", "Activate Indefinitely", "---",
                                   "Timed Session >", "Sleep Prevention Mode >", "---", "Keep-Awake Settings..."));
}

TEST_F(KeepAwakeMenu, ListsItsEightRowsWhileActive) {
    state.activeDuration = KeepAwakeDuration::minutes15;
    state.remainingTime = QStringLiteral("14m 05s");

    const auto lines = linesOf(menu());

    EXPECT_THAT(lines, ElementsAre("(Keep-Awake: Active (14m 05s))", "---", "Deactivate Keep-Awake", "---",
                                   "Timed Session >", "Sleep Prevention Mode >", "---", "Keep-Awake Settings..."));
}

TEST_F(KeepAwakeMenu, ChecksADurationOnlyWhileActive) {
    const auto inactive = linesOf(findEntry(menu(), QStringLiteral("Timed Session"))->submenu);
    state.activeDuration = KeepAwakeDuration::indefinite;
    const auto active = linesOf(findEntry(menu(), QStringLiteral("Timed Session"))->submenu);

    EXPECT_THAT(inactive, ElementsAre("Indefinitely", "15 Minutes", "30 Minutes", "1 Hour", "2 Hours", "4 Hours"));
    EXPECT_THAT(active, ElementsAre("* Indefinitely", "15 Minutes", "30 Minutes", "1 Hour", "2 Hours", "4 Hours"));
}

TEST_F(KeepAwakeMenu, ChecksTheTarget) {
    state.targetMode = KeepAwakeTarget::systemOnly;

    const auto lines = linesOf(findEntry(menu(), QStringLiteral("Sleep Prevention Mode"))->submenu);

    EXPECT_THAT(lines, ElementsAre("Display & System", "* System Only (Display May Sleep)"));
}

TEST_F(KeepAwakeMenu, HasNoShortcuts) {
    for (const StatusMenuEntry& entry : menu()) {
        EXPECT_TRUE(entry.shortcut.isEmpty());
    }
}

TEST_F(KeepAwakeMenu, EveryEntryRunsItsAction) {
    EXPECT_CALL(actions, toggleAction());
    EXPECT_CALL(actions, openSettingsAction());
    EXPECT_TRUE(pick(menu(), QStringLiteral("Activate Indefinitely")));
    EXPECT_TRUE(pick(menu(), QStringLiteral("Keep-Awake Settings...")));
    pickEach<KeepAwakeDuration>(menu(), [this](auto value) { EXPECT_CALL(actions, selectDuration(value)); });
    pickEach<KeepAwakeTarget>(menu(), [this](auto value) { EXPECT_CALL(actions, selectTarget(value)); });
}

TEST_F(KeepAwakeMenu, TheStatusLineCannotBePicked) {
    EXPECT_FALSE(pick(menu(), QStringLiteral("Keep-Awake: Inactive")));
}

}  // namespace
}  // namespace kestro
