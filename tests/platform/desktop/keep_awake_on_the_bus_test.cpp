#include "core/power/keep_awake_manager.h"
#include "core/settings/user_settings.h"
#include "platform/desktop/desktop_power_assertions.h"
#include "platform/simulated/simulated_mac.h"
#include "tests/support/fake_service.h"
#include "tests/support/private_bus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using test::FakeService;
using testing::ElementsAre;

/// The manager on a clock driven by the test, with assertions of a session manager on a bus.
struct KeepAwakeOnTheBus : testing::Test {
    PrivateBus sessionBus;
    QDBusConnection session = sessionBus.connect();
    FakeService sessionManager{
        sessionBus.connect(),
        QStringLiteral("org.gnome.SessionManager"),
        {{QStringLiteral("Inhibit"), [](const QDBusMessage& call) { return call.createReply(7U); }}}};
    DesktopPowerAssertions assertions{session, PrivateBus::none(), {10s, 20s}};
    SimulatedMac mac;
    const Platform platform{
        .clock = mac.clock,
        .runLoop = mac.runLoop,
        .machHost = mac.machHost,
        .systemControl = mac.systemControl,
        .processInfo = mac.processInfo,
        .fileSystem = mac.fileSystem,
        .networkInterfaces = mac.networkInterfaces,
        .powerSources = mac.powerSources,
        .smc = mac.smc,
        .hidEventSystem = mac.hidEventSystem,
        .commandRunner = mac.commandRunner,
        .scriptRunner = mac.scriptRunner,
        .powerAssertions = assertions,
        .userDefaults = mac.userDefaults,
        .notifications = mac.notifications,
        .fileEvents = mac.fileEvents,
    };
    UserSettings settings{mac.userDefaults};
    KeepAwakeManager manager{platform, settings};

    const std::string acquired = R"(Inhibit("Kestro", 0u, "Kestro Keep-Awake Active", 8u))";

    std::vector<std::string> calls() {
        sessionManager.settle(session);
        return sessionManager.calls();
    }
};

TEST_F(KeepAwakeOnTheBus, IsReleasedWhenItsTimeRunsOut) {
    manager.activate(KeepAwakeDuration::minutes15);
    mac.advance(899s);
    EXPECT_THAT(calls(), ElementsAre(acquired));

    mac.advance(2s);

    EXPECT_THAT(calls(), ElementsAre(acquired, "Uninhibit(7u)"));
    EXPECT_FALSE(manager.isActive.get());
}

TEST_F(KeepAwakeOnTheBus, IsReleasedAtTheBatteryThreshold) {
    manager.activate(KeepAwakeDuration::indefinite);

    manager.checkBatterySafeguard(20, false);

    EXPECT_THAT(calls(), ElementsAre(acquired, "Uninhibit(7u)"));
}

TEST_F(KeepAwakeOnTheBus, IsRefusedAsAWholeWhenTheServiceRefuses) {
    sessionManager.refuse(QStringLiteral("Inhibit"));

    manager.activate(KeepAwakeDuration::minutes15);

    EXPECT_THAT(calls(), ElementsAre(acquired));
    EXPECT_FALSE(manager.isActive.get());
    EXPECT_FALSE(manager.remainingSeconds.get());
}

}  // namespace
}  // namespace kestro
