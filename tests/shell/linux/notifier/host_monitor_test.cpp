#include "shell/linux/notifier/host_monitor.h"

#include "tests/shell/linux/notifier/sni_fixture.h"
#include "tests/support/fake_service.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kestro {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;

struct HostMonitorTest : SniFixture {
    test::FakeService service{bus.connect(), HostMonitor::watcherService()};

    std::unique_ptr<HostMonitor> makeMonitor(milliseconds retryPause) {
        NotifierEnvironment patient = environment();
        patient.patience = hours(1);
        patient.retryPause = retryPause;
        return std::make_unique<HostMonitor>(patient);
    }

    std::ptrdiff_t questions() const {
        return std::ranges::count_if(service.calls(),
                                     [](const std::string& call) { return call.starts_with("Get("); });
    }

    /// Sends signals of the watcher and returns when all of them wait in the monitor's event queue.
    void flood(HostMonitor& flooded, int count) {
        for (int number = 0; number < count; ++number) {
            service.connection().send(QDBusMessage::createSignal(HostMonitor::watcherPath(),
                                                                 HostMonitor::watcherService(),
                                                                 QStringLiteral("StatusNotifierHostRegistered")));
        }
        // The bus handles each connection's messages in order.
        const QDBusMessage roundTrip =
            QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                                           QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId"));
        service.connection().call(roundTrip);
        flooded.connection().call(roundTrip);
    }
};

TEST_F(HostMonitorTest, PausesBeforeItAsksAWatcherAgainThatReportsATimeoutAtOnce) {
    service.refuse(QStringLiteral("Get"), QStringLiteral("org.freedesktop.DBus.Error.NoReply"));
    const auto following = makeMonitor(hours(1));
    ASSERT_TRUE(waitUntil([&] { return following->state() == HostMonitor::State::absent; }));

    for (int turn = 0; turn < 20; ++turn) {
        service.settle(following->connection());
    }

    EXPECT_EQ(questions(), 1);
}

TEST_F(HostMonitorTest, AsksAWatcherAgainThatReportedATimeout) {
    service.refuse(QStringLiteral("Get"), QStringLiteral("org.freedesktop.DBus.Error.NoReply"));
    const auto following = makeMonitor(milliseconds(1));
    ASSERT_TRUE(waitUntil([&] { return following->state() == HostMonitor::State::absent; }));

    service.answer(QStringLiteral("Get"), [](const QDBusMessage& call) {
        return call.createReply(QVariant::fromValue(QDBusVariant(true)));
    });

    EXPECT_TRUE(waitUntil([&] { return following->state() == HostMonitor::State::present; }));
}

TEST_F(HostMonitorTest, AsksASilentWatcherOnceHoweverManySignalsItSends) {
    service.hold(true);
    const auto following = makeMonitor(hours(1));
    ASSERT_TRUE(waitUntil([&] { return questions() == 1; }));

    flood(*following, 500);
    settle();
    service.settle(following->connection());

    EXPECT_EQ(questions(), 1);
}

TEST_F(HostMonitorTest, AsksOnceMoreAfterSignalsThatCameDuringAQuestion) {
    service.hold(true);
    const auto following = makeMonitor(hours(1));
    ASSERT_TRUE(waitUntil([&] { return questions() == 1; }));
    flood(*following, 500);
    settle();

    service.hold(false);
    service.answerHeld();
    ASSERT_TRUE(waitUntil([&] { return questions() > 1; }));
    service.settle(following->connection());

    EXPECT_EQ(questions(), 2);
}

TEST_F(HostMonitorTest, AnnouncesAnyNumberOfHostsOnceInATurn) {
    const auto following = makeMonitor(hours(1));
    ASSERT_TRUE(waitUntil([&] { return following->state() == HostMonitor::State::present; }));
    int arrivals = 0;
    QObject::connect(following.get(), &HostMonitor::hostArrived, [&arrivals] { ++arrivals; });

    flood(*following, 500);
    ASSERT_TRUE(waitUntil([&] { return arrivals > 0; }));

    EXPECT_EQ(arrivals, 1);
}

TEST_F(HostMonitorTest, AsksANewOwnerWithoutWaitingForThePreviousOne) {
    service.hold(true);
    const auto following = makeMonitor(hours(1));
    ASSERT_TRUE(waitUntil([&] { return questions() == 1; }));
    service.vanish();

    startWatcher();

    EXPECT_TRUE(waitUntil([&] { return following->state() == HostMonitor::State::present; }));
}

}  // namespace
}  // namespace kestro
