#include "platform/desktop/bus_notifications.h"
#include "platform/desktop/desktop_power_assertions.h"
#include "platform/desktop/json_user_defaults.h"
#include "platform/desktop/power_profile_script_runner.h"
#include "platform/desktop/qt_run_loop.h"
#include "platform/desktop/session_command_runner.h"
#include "platform/simulated/simulated_clock.h"
#include "platform/simulated/simulated_command_runner.h"
#include "platform/simulated/simulated_pattern.h"
#include "tests/platform/contracts/command_runner_contract.h"
#include "tests/platform/contracts/power_mode_service_contract.h"
#include "tests/platform/contracts/run_loop_contract.h"
#include "tests/platform/contracts/script_runner_contract.h"
#include "tests/platform/contracts/session_contract.h"
#include "tests/platform/contracts/user_defaults_contract.h"
#include "tests/platform/desktop/manual_run_loop.h"
#include "tests/platform/desktop/power_profiles_fixture.h"
#include "tests/platform/desktop/scripted_lock_services.h"
#include "tests/support/event_waiting.h"
#include "tests/support/private_bus.h"
#include "tests/support/temporary_directory.h"

namespace kestro {
namespace {

struct DesktopPreferences {
    TemporaryDirectory directory;
    test::ManualRunLoop runLoop;
    JsonUserDefaults made{runLoop, directory / "preferences.json"};

    UserDefaults& port() { return made; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Desktop, UserDefaultsContract, DesktopPreferences);

struct DesktopMainThread {
    QtRunLoop made;

    RunLoop& port() { return made; }
    template <typename Done>
    void runUntil(Done done) {
        waitUntil(done);
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Desktop, RunLoopContract, DesktopMainThread);

struct DesktopAssertions {
    DesktopAssertions() { services.appear(LockMechanism::gnomeSessionManager); }

    PowerAssertions& port() { return made; }
    std::ptrdiff_t held() const { return services.held(); }
    void refuse() { services.reply = test::ScriptedLockServices::Reply::refuse; }

    test::ScriptedLockServices services;
    DesktopPowerAssertions made{services};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Desktop, PowerAssertionsContract, DesktopAssertions);

struct DesktopCenter {
    PrivateBus bus;
    QDBusConnection connection = bus.connect();
    BusNotifications made{connection};

    DistributedNotifications& port() { return made; }
    template <typename Done>
    void settle(Done done) {
        waitUntil(done);
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Desktop, DistributedNotificationsContract, DesktopCenter);

/// The kernel's profiles, which the administrator may switch.
struct DesktopPowerModes : test::PowerProfilesTest {
    DesktopPowerModes() {
        setKernel("balanced", "low-power balanced performance");
        setPkexec("exit 126");
    }

    PowerModeService& port() { return profiles(); }
    void failSwitch() { select(PowerProfile::powerSaver); }
    void succeedSwitch() {
        setPkexec(R"(shift; exec "$@")");
        select(PowerProfile::powerSaver);
    }
    template <typename Done>
    void settle(Done done) {
        EXPECT_TRUE(waitUntil(done));
    }

private:
    void TestBody() override {}
};
INSTANTIATE_TYPED_TEST_SUITE_P(Desktop, PowerModeServiceContract, DesktopPowerModes);

/// The kernel's profiles, with an administrator who consents.
struct OnKernelProfiles : test::PowerProfilesTest {
    OnKernelProfiles() {
        setKernel("balanced", "low-power balanced performance");
        setPkexec(R"(shift; exec "$@")");
    }

private:
    void TestBody() override {}
};

struct DesktopCommands : OnKernelProfiles {
    SimulatedClock clock;
    SimulatedPattern pattern{clock};
    SimulatedCommandRunner others{pattern};
    SessionCommandRunner made{profiles(), others};

    std::optional<CommandOutput> run(const std::string& executable, const std::vector<std::string>& arguments) {
        return inBackground([&] { return made.run(executable, arguments); });
    }
    std::optional<CommandOutput> runKnown() { return run("/usr/bin/pmset", {"-g"}); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Desktop, CommandRunnerContract, DesktopCommands);

struct DesktopScripts : OnKernelProfiles {
    PowerProfileScriptRunner made{profiles()};

    void execute(const std::string& source) {
        inBackground([&] { made.execute(source); });
    }
    int mode() const { return contentsOf(kernelFile()).starts_with("low-power") ? 1 : 0; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Desktop, ScriptRunnerContract, DesktopScripts);

}  // namespace
}  // namespace kestro
