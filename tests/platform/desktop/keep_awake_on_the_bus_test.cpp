#include "core/power/keep_awake_manager.h"
#include "core/settings/user_settings.h"
#include "platform/desktop/bus_lock_services.h"
#include "platform/desktop/desktop_power_assertions.h"
#include "tests/platform/desktop/simulated_platform.h"
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
    BusLink sessionLink{session, {}};
    BusLink systemLink{PrivateBus::none(), {}};
    BusLockServices services{sessionLink, systemLink, {}};
    DesktopPowerAssertions assertions{services, {}, 10s};
    SimulatedMac mac;
    const Platform platform = test::platformWith(mac, assertions);
    UserSettings settings{mac.userDefaults};
    KeepAwakeManager manager{platform, settings};

    const std::string acquired = R"(Inhibit("Kestro", 0u, "Kestro Keep-Awake Active", 12u))";

    std::vector<std::string> calls() {
        sessionManager.settle(session);
        auto calls = sessionManager.calls();
        std::erase(calls, "IsInhibited(12u)");
        return calls;
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
