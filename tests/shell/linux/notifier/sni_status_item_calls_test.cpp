#include "tests/shell/linux/notifier/sni_fixture.h"

#include <QApplication>
#include <QThread>

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <vector>

namespace kestro {
namespace {

using SniStatusItemTest = SniFixture;

TEST_F(SniStatusItemTest, ReportsClicksToItsOwner) {
    startMonitors();
    std::vector<StatusClick> clicks;
    QThread* thread = nullptr;
    const auto item = makeItem({[&](StatusClick click, bool, const QRect&) {
                                    clicks.push_back(click);
                                    thread = QThread::currentThread();
                                },
                                {}});

    EXPECT_EQ(call(*item, "Activate", {100, 4}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(call(*item, "SecondaryActivate", {100, 4}).type(), QDBusMessage::ReplyMessage);

    ASSERT_TRUE(waitUntil([&] { return clicks.size() == 2; }));
    EXPECT_EQ(clicks, (std::vector{StatusClick::primary, StatusClick::secondary}));
    EXPECT_EQ(thread, QCoreApplication::instance()->thread());
}

TEST_F(SniStatusItemTest, MayBeDestroyedByItsOwnClick) {
    startMonitors();
    std::unique_ptr<SniStatusItem> item;
    bool isClicked = false;
    item = makeItem({[&](StatusClick, bool, const QRect&) {
                         item.reset();
                         isClicked = true;
                     },
                     {}});

    call(*item, "Activate", {1, 1});

    EXPECT_TRUE(waitUntil([&] { return isClicked; }));
}

TEST_F(SniStatusItemTest, OpensItsMenuForHostsThatOnlyRequestIt) {
    startMonitors();
    int built = 0;
    const auto item = makeItem({[](StatusClick, bool, const QRect&) {},
                                [&] {
                                    ++built;
                                    return Menu{MenuEntry::header(QStringLiteral("Kestro"))};
                                }});

    call(*item, "ContextMenu", {100, 100});

    ASSERT_TRUE(waitUntil([] { return QApplication::activePopupWidget() != nullptr; }));
    EXPECT_EQ(built, 1);
    EXPECT_EQ(QApplication::activePopupWidget()->pos(), QPoint(100, 100));
}

TEST_F(SniStatusItemTest, OpensTheMenuOnEitherClickWithoutAClickHandler) {
    startMonitors();
    int built = 0;
    const auto item = makeItem({{}, [&] {
                                    ++built;
                                    return Menu{MenuEntry::header(QStringLiteral("Cooling"))};
                                }});

    EXPECT_EQ(property(*item, "ItemIsMenu"), QVariant(true));
    call(*item, "Activate", {100, 100});
    EXPECT_TRUE(waitUntil([&] { return built == 1 && QApplication::activePopupWidget() != nullptr; }));
    call(*item, "SecondaryActivate", {100, 100});
    EXPECT_TRUE(waitUntil([&] { return built == 2 && QApplication::activePopupWidget() != nullptr; }));
}

TEST_F(SniStatusItemTest, ForwardsTheActivationToken) {
    startMonitors();
    const auto item = makeItem();

    EXPECT_EQ(call(*item, "ProvideXdgActivationToken", {QStringLiteral("token-1")}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token-1");
    EXPECT_EQ(call(*item, "ProvideXdgActivationToken", {QString(100'000, QLatin1Char('x'))}).type(),
              QDBusMessage::ErrorMessage);
    EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token-1");
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

TEST_F(SniStatusItemTest, RejectsInvalidArguments) {
    startMonitors();
    int clicks = 0;
    const auto item = makeItem({[&](StatusClick, bool, const QRect&) { ++clicks; }, {}});
    const QString text = QStringLiteral("text");

    for (const char* method : {"Activate", "SecondaryActivate", "ContextMenu"}) {
        EXPECT_EQ(call(*item, method, {}).type(), QDBusMessage::ErrorMessage) << method;
        EXPECT_EQ(call(*item, method, {text, text}).type(), QDBusMessage::ErrorMessage) << method;
        EXPECT_EQ(call(*item, method, {1U, 2U}).type(), QDBusMessage::ErrorMessage) << method;
        EXPECT_EQ(call(*item, method, {1, 2, 3}).type(), QDBusMessage::ErrorMessage) << method;
    }
    EXPECT_EQ(call(*item, "Scroll", {1, QStringLiteral("sideways")}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(call(*item, "Scroll", {1, QStringLiteral("vertical")}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(call(*item, "Explode", {}).type(), QDBusMessage::ErrorMessage);
    EXPECT_FALSE(property(*item, "Nonsense").isValid());
    settle();
    EXPECT_EQ(clicks, 0);
}

TEST_F(SniStatusItemTest, ToleratesAnyCoordinates) {
    startMonitors();
    QRect anchor(1, 2, 3, 4);
    int clicks = 0;
    const auto item = makeItem({[&](StatusClick, bool, const QRect& where) {
                                    anchor = where;
                                    ++clicks;
                                },
                                {}});

    int expected = 0;
    for (const int far : {INT_MIN, INT_MAX, 0}) {
        call(*item, "Activate", {far, far});
        // Two clicks in one turn of the event loop are one.
        ASSERT_TRUE(waitUntil([&] { return clicks == expected + 1; })) << far;
        EXPECT_TRUE(anchor.isNull()) << far;
        anchor = QRect(1, 2, 3, 4);
        ++expected;
    }
}

TEST_F(SniStatusItemTest, PropertiesCannotBeSet) {
    startMonitors();
    const auto item = makeItem();

    const QDBusMessage reply =
        client.call(item->serviceName(), QStringLiteral("/StatusNotifierItem"),
                    QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Set"),
                    {QStringLiteral("org.kde.StatusNotifierItem"), QStringLiteral("Title"),
                     QVariant::fromValue(QDBusVariant(QStringLiteral("other")))});

    EXPECT_EQ(reply.errorName(), QStringLiteral("org.freedesktop.DBus.Error.PropertyReadOnly"));
}

}  // namespace
}  // namespace kestro
