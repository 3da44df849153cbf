#include "platform/desktop/bus_notifications.h"

#include "tests/support/event_waiting.h"
#include "tests/support/private_bus.h"

#include <QDBusVariant>
#include <QVariantMap>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace kestro {
namespace {

using testing::ElementsAre;

const QString path = QStringLiteral("/kestro/notify");
const QString interface = QStringLiteral("kestro.notify");
constexpr auto showSettings = "kestro.notify.showSettings";

class BusNotificationsTest : public testing::Test {
protected:
    BusNotificationsTest() {
        subscription = notifications.observe(showSettings, [this](const auto& info) { received.push_back(info); });
        // The bus handles messages in order: signals sent after this round trip reach the observer.
        ownBus.call(QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                                                   QStringLiteral("org.freedesktop.DBus.Peer"),
                                                   QStringLiteral("Ping")));
    }

    void send(const QVariantList& arguments, const QString& member = QStringLiteral("showSettings")) {
        auto message = QDBusMessage::createSignal(path, interface, member);
        message.setArguments(arguments);
        ASSERT_TRUE(stranger.send(message));
    }

    /// Returns once everything sent so far waits for the event loop of this thread.
    void awaitArrival() {
        for (const QDBusConnection& connection : {stranger, ownBus}) {
            connection.call(
                QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                                               QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId")));
        }
    }

    bool waitFor(std::size_t count) {
        return waitUntil([&] { return received.size() >= count; });
    }

    PrivateBus bus;
    QDBusConnection ownBus = bus.connect();
    QDBusConnection stranger = bus.connect();
    BusNotifications notifications{ownBus};
    std::vector<NotificationUserInfo> received;
    Subscription subscription;
};

NotificationUserInfo tab(NotificationValue value) {
    return {{"tab", std::move(value)}};
}

TEST_F(BusNotificationsTest, ReceiveFromOtherProcessesWithAndWithoutUserInfo) {
    send({});
    send({QVariantMap{{QStringLiteral("tab"), QStringLiteral("Keep-Awake")}}});

    ASSERT_TRUE(waitFor(2));
    EXPECT_THAT(received, ElementsAre(NotificationUserInfo{}, tab("Keep-Awake")));
}

TEST_F(BusNotificationsTest, ReceiveTheirOwnPosts) {
    notifications.post(showSettings);
    notifications.post(showSettings, {{"tab", std::string("Cooling & Fans")}, {"flag", true}, {"n", 2.5}});

    ASSERT_TRUE(waitFor(2));
    EXPECT_THAT(received, ElementsAre(NotificationUserInfo{},
                                      NotificationUserInfo{
                                          {"tab", std::string("Cooling & Fans")}, {"flag", true}, {"n", 2.5}}));
}

TEST_F(BusNotificationsTest, DeliverToEveryObserverOfTheNameUntilItUnsubscribes) {
    int others = 0;
    int second = 0;
    const auto other = notifications.observe("kestro.notify.togglePopover", [&](const auto&) { ++others; });
    auto leaving = notifications.observe(showSettings, [&](const auto&) { ++second; });

    notifications.post(showSettings);
    ASSERT_TRUE(waitFor(1));
    leaving.cancel();
    notifications.post(showSettings);
    notifications.post("kestro.notify.togglePopover");

    ASSERT_TRUE(waitUntil([&] { return others == 1; }));
    EXPECT_EQ(received.size(), 2U);
    EXPECT_EQ(second, 1);
}

TEST_F(BusNotificationsTest, AnObserverMayUnsubscribeInItsOwnCallback) {
    int calls = 0;
    Subscription once;
    once = notifications.observe(showSettings, [&](const auto&) {
        ++calls;
        once.cancel();
    });

    send({});
    send({QVariantMap{{QStringLiteral("tab"), 1}}});

    ASSERT_TRUE(waitFor(2));
    EXPECT_EQ(calls, 1);
}

TEST_F(BusNotificationsTest, IgnoreUserInfoOfOtherTypes) {
    const QString key = QStringLiteral("tab");
    const QVariantList wrong[] = {
        {key}, {42, QVariantMap{{key, key}}}, {QVariantMap{{key, key}}, 1}, {QStringList{key, key}}};
    for (const QVariantList& arguments : wrong) {
        received.clear();

        send(arguments);

        ASSERT_TRUE(waitFor(1));
        EXPECT_THAT(received, ElementsAre(NotificationUserInfo{}));
    }
}

TEST_F(BusNotificationsTest, DeliverValuesOfOtherTypesAsEmpty) {
    const QString key = QStringLiteral("tab");
    send({QVariantMap{{key, 7}}});
    send({QVariantMap{{key, false}}});
    ASSERT_TRUE(waitFor(2));
    EXPECT_THAT(received, ElementsAre(tab(7.0), tab(false)));

    for (const QVariant& value :
         {QVariant(QStringList{key}), QVariant(QVariantMap{{key, key}}), QVariant::fromValue(QDBusVariant(key))}) {
        received.clear();
        send({QVariantMap{{key, value}}});
        ASSERT_TRUE(waitFor(1));
        EXPECT_THAT(received, ElementsAre(tab({})));
    }
}

TEST_F(BusNotificationsTest, LimitEntriesKeysAndTexts) {
    QVariantMap many;
    for (int entry = 0; entry < 65; ++entry) {
        many.insert(QString::number(entry), entry);
    }
    send({many});
    send({QVariantMap{{QStringLiteral("tab"), QString(4'000'000, QLatin1Char('x'))}}});
    send({QVariantMap{{QString(257, QLatin1Char('k')), 1}, {QStringLiteral("tab"), true}}});

    ASSERT_TRUE(waitFor(3));
    EXPECT_THAT(received, ElementsAre(NotificationUserInfo{}, tab({}), tab(true)));
}

TEST_F(BusNotificationsTest, DeliverAFloodOfEqualPostsOnce) {
    for (int count = 0; count < 20'000; ++count) {
        send({});
    }
    send({QVariantMap{{QStringLiteral("tab"), QStringLiteral("Sensors")}}});
    awaitArrival();

    ASSERT_TRUE(waitFor(2));
    EXPECT_THAT(received, ElementsAre(NotificationUserInfo{}, tab("Sensors")));
}

TEST_F(BusNotificationsTest, DropWhatFindsTooManyWaiting) {
    for (int count = 0; count < 1000; ++count) {
        send({QVariantMap{{QStringLiteral("tab"), count}}});
    }
    awaitArrival();

    ASSERT_TRUE(waitFor(64));
    notifications.post(showSettings, tab("Sensors"));
    ASSERT_TRUE(waitFor(65));
    EXPECT_EQ(received.at(0), tab(0.0));
    EXPECT_EQ(received.at(63), tab(63.0));
    EXPECT_EQ(received.at(64), tab("Sensors"));
}

TEST_F(BusNotificationsTest, LetOtherEventsInBetweenTwoDeliveries) {
    for (int count = 0; count < 3; ++count) {
        send({QVariantMap{{QStringLiteral("tab"), count}}});
    }
    awaitArrival();
    std::vector<std::size_t> receivedByTurn;
    QTimer other;
    QObject::connect(&other, &QTimer::timeout, [&] { receivedByTurn.push_back(received.size()); });

    other.start(0);
    ASSERT_TRUE(waitFor(3));

    EXPECT_THAT(receivedByTurn, testing::IsSupersetOf({1U, 2U}));
}

TEST_F(BusNotificationsTest, TheDocumentedShellCommandsWork) {
    const auto run = [&](const std::string& line) {
        return std::system(("DBUS_SESSION_BUS_ADDRESS='" + bus.address().toStdString() + "' " + line).c_str());
    };
    const std::string emit =
        "gdbus emit --session --object-path /kestro/notify --signal kestro.notify.showSettings";

    ASSERT_EQ(run(emit), 0);
    ASSERT_EQ(run(emit + " \"{'tab': <'Keep-Awake'>}\""), 0);

    ASSERT_TRUE(waitFor(2));
    EXPECT_THAT(received, ElementsAre(NotificationUserInfo{}, tab("Keep-Awake")));
}

TEST_F(BusNotificationsTest, StillDeliverWithinTheProcessAfterLosingTheBus) {
    bus.kill();
    ASSERT_TRUE(waitUntil([&] { return !ownBus.isConnected(); }));

    notifications.post(showSettings, tab("Sensors"));

    ASSERT_TRUE(waitFor(1));
    EXPECT_THAT(received, ElementsAre(tab("Sensors")));
}

TEST(BusNotificationsWithoutABus, StillDeliverWithinTheProcessFromTheEventLoop) {
    BusNotifications notifications(PrivateBus::none());
    std::vector<NotificationUserInfo> received;
    const auto subscription =
        notifications.observe(showSettings, [&](const auto& userInfo) { received.push_back(userInfo); });

    notifications.post(showSettings, tab("Sensors"));
    notifications.post("kestro.notify.nobody");

    EXPECT_TRUE(received.empty());
    ASSERT_TRUE(waitUntil([&] { return !received.empty(); }));
    EXPECT_THAT(received, ElementsAre(tab("Sensors")));
}

}  // namespace
}  // namespace kestro
