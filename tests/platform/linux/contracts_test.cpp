#include "platform/linux/battery/linux_power_events.h"
#include "platform/linux/battery/linux_power_sources.h"
#include "platform/linux/kernel/linux_file_events.h"
#include "platform/linux/machine/linux_clock.h"
#include "platform/linux/machine/linux_file_system_statistics.h"
#include "platform/linux/machine/linux_mach_host.h"
#include "platform/linux/machine/linux_process_info_service.h"
#include "platform/linux/machine/linux_system_control.h"
#include "platform/linux/network/linux_network_interfaces.h"
#include "platform/linux/process/linux_command_runner.h"
#include "platform/linux/sensors/linux_hid_event_system.h"
#include "platform/linux/sensors/linux_smc_service.h"
#include "tests/platform/contracts/clock_contract.h"
#include "tests/platform/contracts/command_runner_contract.h"
#include "tests/platform/contracts/file_events_contract.h"
#include "tests/platform/contracts/hid_event_system_contract.h"
#include "tests/platform/contracts/mach_host_contract.h"
#include "tests/platform/contracts/machine_contract.h"
#include "tests/platform/contracts/network_interfaces_contract.h"
#include "tests/platform/contracts/power_events_contract.h"
#include "tests/platform/contracts/power_sources_contract.h"
#include "tests/platform/contracts/smc_service_contract.h"
#include "tests/platform/contracts/system_control_contract.h"
#include "tests/platform/linux/kernel/queue_loop.h"
#include "tests/platform/linux/network/recorded_interfaces.h"
#include "tests/platform/linux/support.h"
#include "tests/support/temporary_directory.h"

#include <sys/socket.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using test::fixture;

constexpr auto nowhere = "/no such machine";

/// A port of a captured laptop, whose machine a test can replace.
template <typename Port>
struct OnLaptop {
    test::ManualClock clock;
    std::optional<Port> made{std::in_place, clock, fixture("apple-laptop")};

    Port& port() { return *made; }
    void moveTo(const std::string& root) { made.emplace(clock, root); }
};

struct LinuxHost : OnLaptop<LinuxMachHost> {
    void fail() { moveTo(nowhere); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, MachHostContract, LinuxHost);

INSTANTIATE_TYPED_TEST_SUITE_P(Linux, SystemControlContract, OnLaptop<LinuxSystemControl>);

INSTANTIATE_TYPED_TEST_SUITE_P(Linux, ProcessInfoServiceContract, OnLaptop<LinuxProcessInfoService>);

struct LinuxVolumes {
    LinuxFileSystemStatistics made;
    FileSystemStatistics& port() { return made; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, FileSystemStatisticsContract, LinuxVolumes);

struct LinuxInterfaces {
    std::string root = fixture("apple-laptop");
    std::optional<LinuxNetworkInterfaces> made{std::in_place, root,
                                               std::make_unique<test::RecordedInterfaces>(root)};

    NetworkInterfaces& port() { return *made; }
    void fail() { made.emplace(nowhere, std::make_unique<test::RecordedInterfaces>(nowhere)); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, NetworkInterfacesContract, LinuxInterfaces);

struct LinuxSources : OnLaptop<LinuxPowerSources> {
    void removeBattery() { moveTo(fixture("vm")); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, PowerSourcesContract, LinuxSources);

/// The kernel, as far as it multicasts events: every listener has a socket of its own.
std::vector<Descriptor> listeners;

Descriptor listen() {
    std::array<int, 2> pair{-1, -1};
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, pair.data()), 0);
    listeners.emplace_back(pair[0]);
    return Descriptor(pair[1]);
}

struct LinuxSupplies {
    test::QueueLoop loop;
    LinuxPowerEvents made{loop, listen};

    ~LinuxSupplies() { listeners.clear(); }
    PowerEvents& port() { return made; }
    static void announce() {
        constexpr std::string_view event("change@/power_supply/AC\0SUBSYSTEM=power_supply\0", 47);
        static_assert(event.back() == '\0');
        for (const Descriptor& listener : listeners) {
            // A listener that has gone refuses it.
            [[maybe_unused]] const auto sent = send(listener.get(), event.data(), event.size(), MSG_NOSIGNAL);
        }
    }
    template <typename Done>
    void settle(Done done) {
        while (!done() && loop.runNext()) {
        }
        while (loop.queued() > 0 && loop.runNext(0ms)) {
        }
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, PowerEventsContract, LinuxSupplies);

struct LinuxController : OnLaptop<LinuxSMCService> {
    void removeController() { moveTo(fixture("vm")); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, SMCServiceContract, LinuxController);

INSTANTIATE_TYPED_TEST_SUITE_P(Linux, HIDEventSystemContract, OnLaptop<LinuxHIDEventSystem>);

struct LinuxFiles {
    test::QueueLoop loop;
    LinuxFileEvents made{loop};
    TemporaryDirectory directory;

    FileEvents& port() { return made; }
    std::string path() const { return directory / "command"; }
    void write(const std::string& text) {
        // As this user's, whatever the test's caller allows others.
        made.createIfMissing(path());
        directory.write("command", text);
    }
    void remove() const { std::filesystem::remove(path()); }

    /// Events of Linux arrive on a thread of their own.
    template <typename Done>
    void settle(Done done) {
        while (!done() && loop.runNext()) {
        }
        while (loop.queued() > 0 && loop.runNext(0ms)) {
        }
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, FileEventsContract, LinuxFiles);

struct LinuxClocks {
    LinuxClock made;
    Clock& port() { return made; }
    void pass() const {
        for (const auto start = made.monotonicNow(); made.monotonicNow() == start;) {
        }
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, ClockContract, LinuxClocks);

struct LinuxCommands {
    TemporaryDirectory root;
    LinuxCommandRunner made{root.path().string(), {[] { return 100.0; }, [] { return 100.0; }, [](double) {}}};

    LinuxCommands() {
        root.write("proc/5/stat", "5 (one) S 1 1 1 0 -1 0 0 0 0 0 900 0 0 0 20 0 1 0 0 1000000 10 1 1\n");
    }
    std::optional<CommandOutput> run(const std::string& executable, const std::vector<std::string>& arguments) {
        return made.run(executable, arguments);
    }
    std::optional<CommandOutput> runKnown() { return run("/bin/ps", {"-A", "-r"}); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, CommandRunnerContract, LinuxCommands);

}  // namespace
}  // namespace kestro
