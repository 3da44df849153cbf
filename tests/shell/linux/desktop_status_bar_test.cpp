#include "shell/linux/desktop_status_bar.h"

#include "tests/shell/linux/notifier/sni_fixture.h"
#include "tests/support/fake_service.h"

#include <QDBusPendingCallWatcher>

#include <gtest/gtest.h>

namespace kestro {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds noGrace{0};
constexpr milliseconds longGrace{1'000'000};

class DesktopStatusBarTest : public SniFixture {
protected:
    static StatusContent content() {
        StatusContent made;
        made.title.text = QStringLiteral("RAM 42%");
        return made;
    }

    bool isRegistered() const { return watcher && !watcher->registrations.isEmpty(); }
};

TEST_F(DesktopStatusBarTest, UsesThePanelIfThereIsOne) {
    startWatcher();
    DesktopStatusBar bar(environment(), longGrace);

    const auto item = bar.createItem(QStringLiteral("kestro-main"), {});
    item->setContent(content());

    EXPECT_TRUE(waitUntil([&] { return isRegistered(); }));
    EXPECT_FALSE(bar.isOnStrip());
    EXPECT_TRUE(item->geometry().isNull());
}

TEST_F(DesktopStatusBarTest, FallsBackToTheStripWhenNoPanelAppearsInTime) {
    DesktopStatusBar bar(environment(), noGrace);
    const auto item = bar.createItem(QStringLiteral("kestro-main"), {});
    item->setContent(content());

    EXPECT_TRUE(waitUntil([&] { return bar.isOnStrip(); }));

    EXPECT_GT(item->geometry().width(), 22);
}

TEST_F(DesktopStatusBarTest, FallsBackToTheStripWhenTheWatcherHasNoHost) {
    startWatcher(false);
    DesktopStatusBar bar(environment(), noGrace);
    const auto item = bar.createItem(QStringLiteral("kestro-main"), {});

    EXPECT_TRUE(waitUntil([&] { return bar.isOnStrip(); }));
}

TEST_F(DesktopStatusBarTest, KeepsTheStripWhenTheWatcherNeverAnswers) {
    test::FakeService silent(bus.connect(), HostMonitor::watcherService());
    silent.hold(true);
    NotifierEnvironment impatient = environment();
    impatient.patience = milliseconds(300);
    impatient.retryPause = milliseconds(0);
    DesktopStatusBar bar(impatient, noGrace);
    const auto item = bar.createItem(QStringLiteral("kestro-main"), {});
    ASSERT_TRUE(waitUntil([&] { return bar.isOnStrip(); }));

    // The same call with the same patience, sent later, so that its time has passed later.
    QDBusMessage call = QDBusMessage::createMethodCall(HostMonitor::watcherService(), HostMonitor::watcherPath(),
                                                       HostMonitor::watcherService(),
                                                       QStringLiteral("RegisterStatusNotifierHost"));
    const QDBusPendingCallWatcher ended(client.connection().asyncCall(call, 300));
    ASSERT_TRUE(waitUntil([&] { return ended.isFinished(); }));
    settle();

    EXPECT_TRUE(bar.isOnStrip());
}

TEST_F(DesktopStatusBarTest, MovesToThePanelWhoseWatcherAnswersLate) {
    test::FakeService slow(bus.connect(), HostMonitor::watcherService());
    slow.hold(true);
    NotifierEnvironment impatient = environment();
    impatient.patience = milliseconds(50);
    impatient.retryPause = milliseconds(0);
    DesktopStatusBar bar(impatient, noGrace);
    const auto item = bar.createItem(QStringLiteral("kestro-main"), {});
    ASSERT_TRUE(waitUntil([&] { return bar.isOnStrip() && slow.heldCalls() >= 3; }));

    slow.hold(false);

    EXPECT_TRUE(waitUntil([&] { return !bar.isOnStrip(); }));
}

TEST_F(DesktopStatusBarTest, FallsBackToTheStripAtOnceWithoutABus) {
    bus.kill();

    const DesktopStatusBar bar(environment(), longGrace);

    EXPECT_TRUE(bar.isOnStrip());
}

TEST_F(DesktopStatusBarTest, MovesToThePanelWhenItStarts) {
    DesktopStatusBar bar(environment(), noGrace);
    const auto item = bar.createItem(QStringLiteral("kestro-main"), {});
    item->setContent(content());
    ASSERT_TRUE(waitUntil([&] { return bar.isOnStrip(); }));

    startWatcher();

    ASSERT_TRUE(waitUntil([&] { return isRegistered(); }));
    EXPECT_FALSE(bar.isOnStrip());
    EXPECT_EQ(client.property(watcher->registrations.last(), QStringLiteral("/StatusNotifierItem"),
                              QStringLiteral("org.kde.StatusNotifierItem"), QStringLiteral("XAyatanaLabel")),
              QVariant(QStringLiteral("RAM 42%")));
}

TEST_F(DesktopStatusBarTest, MovesToTheStripWhenThePanelEnds) {
    startWatcher();
    DesktopStatusBar bar(environment(), noGrace);
    const auto item = bar.createItem(QStringLiteral("kestro-main"), {});
    item->setContent(content());
    ASSERT_TRUE(waitUntil([&] { return isRegistered() && !bar.isOnStrip(); }));

    watcher.reset();

    EXPECT_TRUE(waitUntil([&] { return bar.isOnStrip(); }));
    EXPECT_GT(item->geometry().width(), 22);
}

TEST_F(DesktopStatusBarTest, StaysWhenThePanelRestartsInTime) {
    startWatcher();
    DesktopStatusBar bar(environment(), longGrace);
    const auto item = bar.createItem(QStringLiteral("kestro-main"), {});
    ASSERT_TRUE(waitUntil([&] { return isRegistered(); }));
    const QString name = watcher->registrations.last();

    watcher.reset();
    startWatcher();

    ASSERT_TRUE(waitUntil([&] { return isRegistered(); }));
    EXPECT_EQ(watcher->registrations.last(), name);
    EXPECT_FALSE(bar.isOnStrip());
}

TEST_F(DesktopStatusBarTest, FallsBackToTheStripWhenTheBusEnds) {
    startWatcher();
    DesktopStatusBar bar(environment(), noGrace);
    const auto item = bar.createItem(QStringLiteral("kestro-main"), {});
    ASSERT_TRUE(waitUntil([&] { return isRegistered() && !bar.isOnStrip(); }));

    bus.kill();

    EXPECT_TRUE(waitUntil([&] { return bar.isOnStrip(); }));
}

TEST_F(DesktopStatusBarTest, HidesOnlyTheReadoutWhileAnotherPanelShowsIt) {
    startWatcher();
    DesktopStatusBar bar(environment(), longGrace);
    const auto readout = bar.createItem(QStringLiteral("kestro-main"), {});
    ASSERT_TRUE(waitUntil([&] { return isRegistered(); }));
    const QString name = watcher->registrations.last();
    const auto other = bar.createItem(QStringLiteral("kestro-keep-awake"), {});
    ASSERT_TRUE(waitUntil([&] { return watcher->registrations.size() == 2; }));
    const auto isThere = [&](const QString& service) {
        return client
            .call(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                  QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"), {service})
            .arguments()
            .at(0)
            .toBool();
    };

    bar.setReadoutHosted(true);
    readout->setContent(content());

    EXPECT_FALSE(isThere(name));
    EXPECT_TRUE(isThere(watcher->registrations.last()));
    EXPECT_EQ(watcher->registrations.size(), 2);

    bar.setReadoutHosted(false);
    ASSERT_TRUE(waitUntil([&] { return watcher->registrations.size() == 3; }));
    EXPECT_EQ(client.property(watcher->registrations.last(), QStringLiteral("/StatusNotifierItem"),
                              QStringLiteral("org.kde.StatusNotifierItem"), QStringLiteral("Id")),
              QVariant(QStringLiteral("kestro-main")));
}

TEST_F(DesktopStatusBarTest, EmptiesTheStripWhileAPanelShowsTheReadout) {
    DesktopStatusBar bar(environment(), noGrace);
    const auto readout = bar.createItem(QStringLiteral("kestro-main"), {});
    const auto other = bar.createItem(QStringLiteral("kestro-keep-awake"), {});
    readout->setContent(content());
    ASSERT_TRUE(waitUntil([&] { return bar.isOnStrip(); }));
    ASSERT_FALSE(bar.overlay().isNull());

    bar.setReadoutHosted(true);
    EXPECT_TRUE(bar.overlay().isNull());
    EXPECT_TRUE(readout->geometry().isNull());
    readout->openMenu();

    bar.setReadoutHosted(false);
    EXPECT_GT(readout->geometry().width(), 22);
}

TEST_F(DesktopStatusBarTest, NeverShowsTheStripWhileAPanelShowsTheReadout) {
    DesktopStatusBar bar(environment(), noGrace);
    bar.setReadoutHosted(true);
    const auto readout = bar.createItem(QStringLiteral("kestro-main"), {});
    readout->setContent(content());

    ASSERT_TRUE(waitUntil([&] { return bar.isOnStrip(); }));

    EXPECT_TRUE(bar.overlay().isNull());
}

}  // namespace
}  // namespace kestro
