#include "shell/linux/notifier/sni_status_item.h"

#include "tests/shell/linux/notifier/sni_fixture.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace kestro {
namespace {

using SniStatusItemTest = SniFixture;

StatusContent readout(const char* text = " RAM 42%") {
    StatusContent content;
    content.symbol = StatusSymbol{QStringLiteral("waveform.path.ecg"), QStringLiteral("Kestro"), 12};
    content.title.text = QString::fromUtf8(text);
    content.widestTitle = QStringLiteral(" RAM 100%");
    content.toolTip = QStringLiteral("RAM <42%>");
    content.glance = StatusGlance{42, 18};
    return content;
}

QList<QSize> sizes(const QVariant& pixmaps) {
    QList<QSize> found;
    for (const NotifierPixmap& pixmap : qdbus_cast<NotifierPixmaps>(pixmaps)) {
        found.append({pixmap.width, pixmap.height});
        EXPECT_EQ(pixmap.bytes.size(), pixmap.width * pixmap.height * 4);
    }
    return found;
}

TEST_F(SniStatusItemTest, RegistersUnderAUniqueName) {
    startWatcher();
    startMonitors();

    const auto first = makeItem();
    const auto second = makeItem();

    const QString prefix =
        QStringLiteral("org.kde.StatusNotifierItem-%1-").arg(QCoreApplication::applicationPid());
    EXPECT_TRUE(first->serviceName().startsWith(prefix));
    EXPECT_NE(first->serviceName(), second->serviceName());
    EXPECT_TRUE(waitUntil([&] {
        return watcher->registrations.contains(first->serviceName()) &&
               watcher->registrations.contains(second->serviceName());
    }));
}

TEST_F(SniStatusItemTest, RegistersOnlyOnceWithTheSamePanel) {
    startWatcher();
    startMonitors();
    const auto item = makeItem();

    ASSERT_TRUE(waitUntil([&] { return monitor->state() == HostMonitor::State::present; }));
    settle(*item);

    EXPECT_EQ(watcher->registrations, QStringList{item->serviceName()});
}

TEST_F(SniStatusItemTest, ServesEveryProperty) {
    startWatcher();
    startMonitors();
    const auto item = makeItem({[](StatusClick, bool, const QRect&) {}, {}});
    item->setContent(readout());

    EXPECT_EQ(property(*item, "Category").toString(), QStringLiteral("Hardware"));
    EXPECT_EQ(property(*item, "Id").toString(), QStringLiteral("kestro-main"));
    EXPECT_EQ(property(*item, "Title").toString(), QStringLiteral("Kestro"));
    EXPECT_EQ(property(*item, "Status").toString(), QStringLiteral("Active"));
    EXPECT_EQ(property(*item, "WindowId"), QVariant(0));
    EXPECT_EQ(property(*item, "IconName"), QVariant(QString()));
    EXPECT_EQ(property(*item, "OverlayIconName"), QVariant(QString()));
    EXPECT_EQ(property(*item, "AttentionIconName"), QVariant(QString()));
    EXPECT_EQ(property(*item, "AttentionMovieName"), QVariant(QString()));
    EXPECT_TRUE(sizes(property(*item, "OverlayIconPixmap")).isEmpty());
    EXPECT_TRUE(sizes(property(*item, "AttentionIconPixmap")).isEmpty());
    EXPECT_EQ(property(*item, "ItemIsMenu"), QVariant(false));
    EXPECT_EQ(property(*item, "Menu").value<QDBusObjectPath>().path(), QStringLiteral("/MenuBar"));
    EXPECT_EQ(property(*item, "XAyatanaLabel").toString(), QStringLiteral("RAM 42%"));
    EXPECT_EQ(property(*item, "XAyatanaLabelGuide").toString(), QStringLiteral("RAM 100%"));
    EXPECT_EQ(property(*item, "IconAccessibleDesc").toString(), QStringLiteral("Kestro, RAM 42%"));
    EXPECT_EQ(sizes(property(*item, "IconPixmap")),
              (QList<QSize>{{16, 16}, {22, 22}, {24, 24}, {32, 32}, {44, 44}, {48, 48}, {64, 64}}));
    const auto toolTip = qdbus_cast<NotifierToolTip>(property(*item, "ToolTip"));
    EXPECT_EQ(toolTip.title, QStringLiteral("Kestro"));
    EXPECT_EQ(toolTip.text, QStringLiteral("RAM &lt;42%&gt;"));
}

TEST_F(SniStatusItemTest, ReturnsAllPropertiesAtOnce) {
    startMonitors();
    const auto item = makeItem();
    item->setContent(readout());

    const QDBusMessage reply =
        client.call(item->serviceName(), QStringLiteral("/StatusNotifierItem"),
                    QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("GetAll"),
                    {QStringLiteral("org.kde.StatusNotifierItem")});

    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(qdbus_cast<QVariantMap>(reply.arguments().at(0)).size(), 19);
}

TEST_F(SniStatusItemTest, DescribesItsMethods) {
    startMonitors();
    const auto item = makeItem();

    for (const char* path : {"/StatusNotifierItem", "/MenuBar"}) {
        const QDBusMessage reply =
            client.call(item->serviceName(), QString::fromLatin1(path),
                        QStringLiteral("org.freedesktop.DBus.Introspectable"), QStringLiteral("Introspect"));
        ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage);
        EXPECT_TRUE(reply.arguments().at(0).toString().contains(QStringLiteral("<method name="))) << path;
    }
}

TEST_F(SniStatusItemTest, AnnouncesOnlyWhatChanged) {
    startWatcher();
    startMonitors();
    const auto item = makeItem();
    item->setContent(readout());
    settle(*item);
    watcher->announcements.clear();

    item->setContent(readout());
    settle(*item);
    EXPECT_TRUE(watcher->announcements.isEmpty());

    item->setContent(readout(" RAM 43%"));
    EXPECT_TRUE(waitUntil([&] { return !watcher->announcements.isEmpty(); }));
    settle(*item);
    EXPECT_EQ(watcher->announcements, QStringList{QStringLiteral("XAyatanaNewLabel")});
}

TEST_F(SniStatusItemTest, UpdatesTheSpokenFiguresWithoutASignal) {
    startWatcher();
    startMonitors();
    const auto item = makeItem();
    StatusContent content = readout("");
    content.spokenText = QStringLiteral("RAM 42%");
    item->setContent(content);
    settle(*item);
    watcher->announcements.clear();

    content.spokenText = QStringLiteral("RAM 43%");
    item->setContent(content);
    settle(*item);

    EXPECT_EQ(property(*item, "IconAccessibleDesc").toString(), QStringLiteral("Kestro, RAM 43%"));
    EXPECT_TRUE(watcher->announcements.isEmpty());
}

TEST_F(SniStatusItemTest, RepaintsTheIconOnlyForNewValues) {
    startWatcher();
    startMonitors();
    const auto item = makeItem();
    StatusContent content = readout();
    item->setContent(content);
    const auto before = qdbus_cast<NotifierPixmaps>(property(*item, "IconPixmap"));
    settle(*item);
    watcher->announcements.clear();

    content.glance = StatusGlance{43, 18};
    item->setContent(content);

    EXPECT_TRUE(waitUntil([&] { return watcher->announcements == QStringList{QStringLiteral("NewIcon")}; }));
    const auto after = qdbus_cast<NotifierPixmaps>(property(*item, "IconPixmap"));
    ASSERT_EQ(after.size(), before.size());
    EXPECT_NE(after, before);
}

TEST_F(SniStatusItemTest, ShowsTheSymbolOnceTheHostIsKnownToShowLabels) {
    hostProcess = QStringLiteral("mate-panel");
    startMonitors();
    const auto item = makeItem();
    item->setContent(readout());
    const auto values = qdbus_cast<NotifierPixmaps>(property(*item, "IconPixmap"));

    startWatcher();

    ASSERT_TRUE(waitUntil([&] { return monitor->labels() != LabelSupport::hidden; }));
    EXPECT_NE(qdbus_cast<NotifierPixmaps>(property(*item, "IconPixmap")), values);
    EXPECT_TRUE(qdbus_cast<NotifierToolTip>(property(*item, "ToolTip")).text.isEmpty());
}

TEST_F(SniStatusItemTest, RegistersAgainWhenTheWatcherReturns) {
    startWatcher();
    startMonitors();
    const auto item = makeItem();
    ASSERT_TRUE(waitUntil([&] { return watcher->registrations.contains(item->serviceName()); }));

    watcher.reset();
    ASSERT_TRUE(waitUntil([&] { return monitor->state() == HostMonitor::State::absent; }));
    startWatcher();

    EXPECT_TRUE(waitUntil([&] { return watcher->registrations.contains(item->serviceName()); }));
    EXPECT_TRUE(waitUntil([&] { return monitor->state() == HostMonitor::State::present; }));
}

TEST_F(SniStatusItemTest, RegistersAgainWhenAHostReturns) {
    startWatcher();
    startMonitors();
    const auto item = makeItem();
    ASSERT_TRUE(waitUntil([&] { return monitor->state() == HostMonitor::State::present; }));
    watcher->setHost(false);
    ASSERT_TRUE(waitUntil([&] { return monitor->state() == HostMonitor::State::absent; }));
    watcher->registrations.clear();

    watcher->setHost(true);

    EXPECT_TRUE(waitUntil([&] { return watcher->registrations.contains(item->serviceName()); }));
    EXPECT_TRUE(waitUntil([&] { return monitor->state() == HostMonitor::State::present; }));
}

TEST_F(SniStatusItemTest, LeavesTheBusWithItsName) {
    startMonitors();
    auto item = makeItem();
    const QString name = item->serviceName();

    item.reset();

    EXPECT_TRUE(waitUntil([&] {
        const QDBusMessage reply =
            client.call(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"), {name});
        return !reply.arguments().at(0).toBool();
    }));
}

TEST_F(SniStatusItemTest, WorksWithoutABus) {
    bus.kill();
    startMonitors();

    const auto item = makeItem();
    item->setContent(readout());

    EXPECT_EQ(monitor->state(), HostMonitor::State::absent);
}

TEST_F(SniStatusItemTest, DetectsTheLossOfTheBus) {
    startWatcher();
    startMonitors();
    ASSERT_TRUE(waitUntil([&] { return monitor->state() == HostMonitor::State::present; }));

    bus.kill();

    EXPECT_TRUE(waitUntil([&] { return monitor->state() == HostMonitor::State::absent; }));
}

}  // namespace
}  // namespace kestro
