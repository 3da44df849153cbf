#include "app/menus/keep_awake_menu.h"

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

struct KeepAwakeMenu : testing::Test, test::SimulatedKestro {
    int settingsOpened = 0;

    Menu menu() {
        return keepAwakeMenu(keepAwake, powerStatus, [this] { ++settingsOpened; });
    }
};

TEST_F(KeepAwakeMenu, ListsItsEightRowsWhileInactive) {
    const auto lines = linesOf(menu());

    EXPECT_THAT(lines, ElementsAre("(Keep-Awake: Inactive)", "---", "Activate Indefinitely", "---",
                                   "Timed Session >", "Sleep Prevention Mode >", "---", "Keep-Awake Settings..."));
}

TEST_F(KeepAwakeMenu, ListsItsEightRowsWhileActive) {
    keepAwake.activate(KeepAwakeDuration::minutes15);
    mac.advance(55s);

    const auto lines = linesOf(menu());

    EXPECT_THAT(lines, ElementsAre("(Keep-Awake: Active (14m 05s))", "---", "Deactivate Keep-Awake", "---",
                                   "Timed Session >", "Sleep Prevention Mode >", "---", "Keep-Awake Settings..."));
}

TEST_F(KeepAwakeMenu, ChecksADurationOnlyWhileActive) {
    const auto inactive = linesOf(findEntry(menu(), QStringLiteral("Timed Session"))->submenu);
    keepAwake.activate(KeepAwakeDuration::indefinite);
    const auto active = linesOf(findEntry(menu(), QStringLiteral("Timed Session"))->submenu);

    EXPECT_THAT(inactive, ElementsAre("Indefinitely", "15 Minutes", "30 Minutes", "1 Hour", "2 Hours", "4 Hours"));
    EXPECT_THAT(active, ElementsAre("* Indefinitely", "15 Minutes", "30 Minutes", "1 Hour", "2 Hours", "4 Hours"));
}

TEST_F(KeepAwakeMenu, ChecksTheTarget) {
    keepAwake.setTargetMode(KeepAwakeTarget::systemOnly);

    const auto lines = linesOf(findEntry(menu(), QStringLiteral("Sleep Prevention Mode"))->submenu);

    EXPECT_THAT(lines, ElementsAre("Display & System", "* System Only (Display May Sleep)"));
}

TEST_F(KeepAwakeMenu, HasNoShortcuts) {
    for (const MenuEntry& entry : menu()) {
        EXPECT_TRUE(entry.shortcut.isEmpty());
    }
}

TEST_F(KeepAwakeMenu, EveryEntryTakesEffect) {
    EXPECT_TRUE(pick(menu(), QStringLiteral("Activate Indefinitely")));
    EXPECT_TRUE(keepAwake.isActive.get());
    EXPECT_TRUE(pick(menu(), QStringLiteral("Deactivate Keep-Awake")));
    EXPECT_FALSE(keepAwake.isActive.get());
    pickEach<KeepAwakeDuration>(menu(), [this](auto value) { EXPECT_EQ(keepAwake.currentDuration.get(), value); });
    pickEach<KeepAwakeTarget>(menu(), [this](auto value) { EXPECT_EQ(keepAwake.targetMode.get(), value); });
    EXPECT_TRUE(pick(menu(), QStringLiteral("Keep-Awake Settings...")));
    EXPECT_EQ(settingsOpened, 1);
}

TEST_F(KeepAwakeMenu, TheStatusLineCannotBePicked) {
    EXPECT_FALSE(pick(menu(), QStringLiteral("Keep-Awake: Inactive")));
}

TEST_F(KeepAwakeMenu, SaysWhenNothingHoldsTheLock) {
    keepAwake.activate(KeepAwakeDuration::indefinite);
    mac.powerAssertions.setReport({PowerAssertionReport::State::lost, {}});
    EXPECT_EQ(linesOf(menu()).front(), "(Keep-Awake: Not Held (Active (∞)))");

    mac.powerAssertions.setReport({PowerAssertionReport::State::held, {"logind"}});

    EXPECT_EQ(linesOf(menu()).front(), "(Keep-Awake: Active (Active (∞)))");
}

}  // namespace
}  // namespace kestro
