#include "shell/linux/readout/bus_readout_service.h"
#include "tests/shell/linux/readout/readout_panel.h"

#include <QGuiApplication>
#include <QScreen>

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kestro {
namespace {

using ReadoutRequests = test::ReadoutServiceFixture;
using test::ReadoutPanel;

TEST_F(ReadoutRequests, OpensThePopoverAtTheClick) {
    panel.call(QStringLiteral("TogglePopover"), {300, 200});
    ASSERT_TRUE(waitUntil([&] { return !popovers.empty(); }));

    ASSERT_TRUE(QGuiApplication::primaryScreen()->geometry().contains(300, 200));
    EXPECT_EQ(popovers[0].topLeft(), QPoint(300, 200));
}

TEST_F(ReadoutRequests, IgnoresPlacesThatNoScreenHas) {
    const std::vector<std::pair<int, int>> places{
        {0, 0}, {-1, 5}, {INT_MAX, INT_MAX}, {INT_MIN, INT_MIN}, {5, INT_MIN}, {1'000'000, 5}};
    for (const auto& [x, y] : places) {
        popovers.clear();
        EXPECT_EQ(panel.call(QStringLiteral("TogglePopover"), {x, y}).type(), QDBusMessage::ReplyMessage);
        ASSERT_TRUE(waitUntil([&] { return !popovers.empty(); }));
        EXPECT_TRUE(popovers[0].isNull()) << x << ' ' << y;
    }
}

TEST_F(ReadoutRequests, PerformsRequestsAfterTheReplyAndOnceForEqualOnes) {
    QDBusMessage message = QDBusMessage::createMethodCall(ReadoutPanel::name(), ReadoutPanel::path(),
                                                          ReadoutPanel::name(), QStringLiteral("ToggleKeepAwake"));
    for (int count = 0; count < 2000; ++count) {
        panel.client().connection().send(message);
    }
    panel.call(QStringLiteral("ShowDashboard"));

    ASSERT_TRUE(waitUntil([&] { return dashboards == 1; }));
    EXPECT_GE(keepAwakes, 1);
    EXPECT_LT(keepAwakes, 2000);
}

TEST_F(ReadoutRequests, ShowsTheSettingsAtAKnownTab) {
    EXPECT_EQ(panel.call(QStringLiteral("ShowSettings"), {QStringLiteral("Keep-Awake")}).type(),
              QDBusMessage::ReplyMessage);
    ASSERT_TRUE(waitUntil([&] { return settings.size() == 1; }));
    EXPECT_EQ(settings[0], SettingsTab::keepAwake);

    panel.call(QStringLiteral("ShowSettings"), {QString()});
    ASSERT_TRUE(waitUntil([&] { return settings.size() == 2; }));
    EXPECT_EQ(settings[1], std::nullopt);
}

TEST_F(ReadoutRequests, HeedsTheLastOfSeveralCallsOfAMethod) {
    for (const char* tab : {"Keep-Awake", "Dashboard", "Appearance", "Sensors"}) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            ReadoutPanel::name(), ReadoutPanel::path(), ReadoutPanel::name(), QStringLiteral("ShowSettings"));
        message << QString::fromLatin1(tab);
        panel.client().connection().send(message);
    }
    panel.call(QStringLiteral("ShowDashboard"));
    ASSERT_TRUE(waitUntil([&] { return dashboards == 1; }));

    ASSERT_FALSE(settings.empty());
    EXPECT_EQ(settings.back(), SettingsTab::sensors);
}

TEST_F(ReadoutRequests, RefusesTabsThatDoNotExist) {
    for (const QString& tab : {QStringLiteral("keepAwake"), QStringLiteral("../.."), QString(100'000, QChar(7))}) {
        EXPECT_EQ(panel.call(QStringLiteral("ShowSettings"), {tab}).type(), QDBusMessage::ErrorMessage);
    }
    panel.call(QStringLiteral("ShowDashboard"));
    ASSERT_TRUE(waitUntil([&] { return dashboards == 1; }));

    EXPECT_TRUE(settings.empty());
}

TEST_F(ReadoutRequests, IsHostedWhileAPanelSaysSo) {
    ASSERT_TRUE(panel.follow());

    panel.call(QStringLiteral("RegisterHost"));
    ASSERT_TRUE(waitUntil([&] { return hosted == std::vector<bool>{true}; }));
    EXPECT_EQ(panel.property("Hosted"), QVariant(true));

    panel.call(QStringLiteral("UnregisterHost"));
    ASSERT_TRUE(waitUntil([&] { return hosted == (std::vector<bool>{true, false}); }));
    panel.settle();
    ASSERT_EQ(panel.changes.size(), 2U);
    EXPECT_EQ(panel.changes[0], (QVariantMap{{QStringLiteral("Hosted"), true}}));
    EXPECT_EQ(panel.changes[1], (QVariantMap{{QStringLiteral("Hosted"), false}}));
}

TEST_F(ReadoutRequests, IsHostedUntilTheLastHostHasLeft) {
    auto other = std::make_unique<ReadoutPanel>(bus.address());
    other->call(QStringLiteral("RegisterHost"));
    panel.call(QStringLiteral("RegisterHost"));
    ASSERT_TRUE(waitUntil([&] { return !hosted.empty(); }));

    panel.call(QStringLiteral("UnregisterHost"));
    panel.settle();
    EXPECT_EQ(hosted, std::vector<bool>{true});

    other.reset();
    EXPECT_TRUE(waitUntil([&] { return hosted == (std::vector<bool>{true, false}); }));
}

TEST_F(ReadoutRequests, IsNotHostedWithoutABus) {
    panel.call(QStringLiteral("RegisterHost"));
    ASSERT_TRUE(waitUntil([&] { return !hosted.empty(); }));

    bus.kill();

    EXPECT_TRUE(waitUntil([&] { return hosted == (std::vector<bool>{true, false}); }));
}

}  // namespace
}  // namespace kestro
