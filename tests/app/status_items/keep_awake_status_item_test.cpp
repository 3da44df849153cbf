#include "app/status_items/keep_awake_status_item.h"

#include "app/base/notification_names.h"
#include "tests/app/menus/menu_reading.h"
#include "tests/app/simulated_kestro.h"
#include "tests/shell/fake_status_bar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using test::findEntry;
using test::linesOf;
using test::pick;

struct KeepAwakeStatusItemTest : testing::Test, test::SimulatedKestro {
    const QString identifier = QStringLiteral("kestro-keep-awake");
    KeepAwakeManager& manager = keepAwake;
    test::FakeStatusBar bar;
    KeepAwakeStatusItem item{mac.platform(), bar, settings, manager, powerStatus};

    const StatusContent& shown() { return bar.item(identifier).content; }
};

TEST_F(KeepAwakeStatusItemTest, IsInTheBarFromTheStart) {
    ASSERT_TRUE(bar.contains(identifier));
    EXPECT_EQ(shown().symbol, (StatusSymbol{QStringLiteral("cup.and.saucer"), QStringLiteral("Keep Awake"), 13}));
    EXPECT_EQ(shown().title.text, QString());
}

TEST_F(KeepAwakeStatusItemTest, FollowsItsSetting) {
    settings.showDedicatedKeepAwakeItem.set(false);
    mac.runPending();
    EXPECT_FALSE(bar.contains(identifier));
    EXPECT_FALSE(item.isEnabled());

    settings.showDedicatedKeepAwakeItem.set(true);
    mac.runPending();
    EXPECT_TRUE(bar.contains(identifier));
    EXPECT_TRUE(item.isEnabled());
}

TEST_F(KeepAwakeStatusItemTest, IsCreatedOnce) {
    item.enable();
    settings.showDedicatedKeepAwakeItem.set(true);
    mac.runPending();

    EXPECT_EQ(bar.created.size(), 1);
}

TEST_F(KeepAwakeStatusItemTest, FillsTheCupAndCountsTheMinutes) {
    manager.activate(KeepAwakeDuration::minutes15);
    mac.advance(55s);

    EXPECT_EQ(shown().symbol->name, QStringLiteral("cup.and.saucer.fill"));
    EXPECT_EQ(shown().title, (StatusTitle{QStringLiteral(" 14m"), 11, 600, StatusTitleColor::orange}));
}

TEST_F(KeepAwakeStatusItemTest, ShowsNoMinutesForAnIndefinitePeriod) {
    manager.activate(KeepAwakeDuration::indefinite);
    mac.runPending();

    EXPECT_EQ(shown().symbol->name, QStringLiteral("cup.and.saucer.fill"));
    EXPECT_EQ(shown().title.text, QString());
}

TEST_F(KeepAwakeStatusItemTest, ShowsZeroMinutesInTheLastMinute) {
    manager.activate(KeepAwakeDuration::minutes15);
    mac.advance(850s);

    EXPECT_EQ(shown().title.text, QStringLiteral(" 0m"));
}

TEST_F(KeepAwakeStatusItemTest, EmptiesTheCupAtTheEnd) {
    manager.activate(KeepAwakeDuration::minutes15);
    mac.advance(901s);

    EXPECT_EQ(shown().symbol->name, QStringLiteral("cup.and.saucer"));
    EXPECT_EQ(shown().title.text, QString());
}

TEST_F(KeepAwakeStatusItemTest, ChangesOnceAMinuteWhileCounting) {
    manager.activate(KeepAwakeDuration::hours1);
    mac.advance(2s);
    const int before = bar.item(identifier).contentChanges;

    mac.advance(120s);

    EXPECT_EQ(bar.item(identifier).contentChanges - before, 2);
}

TEST_F(KeepAwakeStatusItemTest, OpensItsMenuOnEitherClick) {
    bar.click(identifier, StatusClick::primary, false, {});
    bar.click(identifier, StatusClick::secondary, false, {});
    item.showMenu();

    EXPECT_EQ(bar.item(identifier).menusOpened, 3);
}

TEST_F(KeepAwakeStatusItemTest, RebuildsItsMenuFromTheManager) {
    manager.activate(KeepAwakeDuration::minutes15);
    mac.advance(55s);

    const Menu menu = bar.menu(identifier);

    EXPECT_EQ(linesOf(menu)[0], "(Keep-Awake: Active (14m 05s))");
    EXPECT_TRUE(findEntry(menu, QStringLiteral("15 Minutes"))->isChecked);
    EXPECT_TRUE(findEntry(menu, QStringLiteral("Display & System"))->isChecked);
}

TEST_F(KeepAwakeStatusItemTest, StartsTheDefaultDurationDespiteTheEntrysLabel) {
    settings.defaultKeepAwakeDuration.set(KeepAwakeDuration::hours2);

    EXPECT_TRUE(pick(bar.menu(identifier), QStringLiteral("Activate Indefinitely")));

    EXPECT_TRUE(manager.isActive.get());
    EXPECT_EQ(manager.currentDuration.get(), KeepAwakeDuration::hours2);
}

TEST_F(KeepAwakeStatusItemTest, DeactivatesFromItsMenu) {
    manager.activate(KeepAwakeDuration::indefinite);

    EXPECT_TRUE(pick(bar.menu(identifier), QStringLiteral("Deactivate Keep-Awake")));

    EXPECT_FALSE(manager.isActive.get());
}

TEST_F(KeepAwakeStatusItemTest, StartsATimedSession) {
    EXPECT_TRUE(pick(bar.menu(identifier), QStringLiteral("4 Hours")));

    EXPECT_EQ(manager.currentDuration.get(), KeepAwakeDuration::hours4);
    EXPECT_EQ(manager.targetMode.get(), KeepAwakeTarget::displayAndSystem);
}

TEST_F(KeepAwakeStatusItemTest, ChangesTheTarget) {
    EXPECT_TRUE(pick(bar.menu(identifier), QStringLiteral("System Only (Display May Sleep)")));

    EXPECT_EQ(manager.targetMode.get(), KeepAwakeTarget::systemOnly);
    EXPECT_EQ(settings.keepAwakeTargetMode.get(), KeepAwakeTarget::systemOnly);
}

TEST_F(KeepAwakeStatusItemTest, OpensTheSettingsAtItsTab) {
    EXPECT_TRUE(pick(bar.menu(identifier), QStringLiteral("Keep-Awake Settings...")));

    EXPECT_EQ(settings.selectedSettingsTab.get(), SettingsTab::keepAwake);
    ASSERT_EQ(mac.notifications.postings.size(), 1);
    EXPECT_EQ(mac.notifications.postings[0].name, notification_names::showSettings);
    EXPECT_TRUE(mac.notifications.postings[0].userInfo.empty());
}

TEST_F(KeepAwakeStatusItemTest, DoesNothingWithoutItsItem) {
    item.disable();

    item.updateIcon();
    item.showMenu();
    manager.activate(KeepAwakeDuration::minutes15);
    mac.advance(3s);

    EXPECT_FALSE(bar.contains(identifier));
}

TEST_F(KeepAwakeStatusItemTest, NamesWhoHoldsTheLock) {
    manager.activate(KeepAwakeDuration::indefinite);
    mac.powerAssertions.setReport({PowerAssertionReport::State::held, {"GNOME", "logind"}});
    mac.runPending();

    EXPECT_EQ(shown().help, QStringLiteral("Display & System · held by GNOME, logind"));
    EXPECT_EQ(shown().toolTip, QStringLiteral("Keep-Awake: Active"));
}

TEST_F(KeepAwakeStatusItemTest, EmptiesTheCupWhileNothingHoldsTheLock) {
    manager.activate(KeepAwakeDuration::indefinite);
    mac.powerAssertions.setReport({PowerAssertionReport::State::lost, {}});
    mac.runPending();
    EXPECT_EQ(shown().symbol->name, QStringLiteral("cup.and.saucer"));
    EXPECT_EQ(shown().toolTip, QStringLiteral("Keep-Awake: Not Held"));
    EXPECT_EQ(shown().help, QStringLiteral("Not held: the lock was lost, and will be requested again."));

    mac.powerAssertions.setReport({PowerAssertionReport::State::held, {"GNOME"}});
    mac.runPending();

    EXPECT_EQ(shown().symbol->name, QStringLiteral("cup.and.saucer.fill"));
}

TEST_F(KeepAwakeStatusItemTest, SaysWhyARefusedLockIsNotHeld) {
    mac.powerAssertions.refusal.always();

    manager.activate(KeepAwakeDuration::indefinite);
    mac.runPending();

    EXPECT_EQ(shown().toolTip, QStringLiteral("Keep-Awake: Inactive"));
    EXPECT_EQ(shown().help,
              QStringLiteral("Keep-awake is off because no service of this desktop grants the lock."));
}

}  // namespace
}  // namespace kestro
