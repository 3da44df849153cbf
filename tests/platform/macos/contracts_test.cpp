#include "core/platform/power_mode_script.h"
#include "platform/macos/mac_clock.h"
#include "platform/macos/mac_command_runner.h"
#include "platform/macos/mac_distributed_notifications.h"
#include "platform/macos/mac_file_events.h"
#include "platform/macos/mac_file_system_statistics.h"
#include "platform/macos/mac_hid_event_system.h"
#include "platform/macos/mac_mach_host.h"
#include "platform/macos/mac_network_interfaces.h"
#include "platform/macos/mac_power_assertions.h"
#include "platform/macos/mac_power_events.h"
#include "platform/macos/mac_power_mode_service.h"
#include "platform/macos/mac_power_sources.h"
#include "platform/macos/mac_process_info_service.h"
#include "platform/macos/mac_run_loop.h"
#include "platform/macos/mac_script_runner.h"
#include "platform/macos/mac_smc_service.h"
#include "platform/macos/mac_system_control.h"
#include "platform/macos/mac_user_defaults.h"
#include "tests/platform/contracts/clock_contract.h"
#include "tests/platform/contracts/command_runner_contract.h"
#include "tests/platform/contracts/file_events_contract.h"
#include "tests/platform/contracts/hid_event_system_contract.h"
#include "tests/platform/contracts/mach_host_contract.h"
#include "tests/platform/contracts/machine_contract.h"
#include "tests/platform/contracts/network_interfaces_contract.h"
#include "tests/platform/contracts/power_events_contract.h"
#include "tests/platform/contracts/power_mode_service_contract.h"
#include "tests/platform/contracts/power_sources_contract.h"
#include "tests/platform/contracts/run_loop_contract.h"
#include "tests/platform/contracts/script_runner_contract.h"
#include "tests/platform/contracts/session_contract.h"
#include "tests/platform/contracts/smc_service_contract.h"
#include "tests/platform/contracts/system_control_contract.h"
#include "tests/platform/contracts/user_defaults_contract.h"
#include "tests/platform/macos/fakes/fake_mac.h"
#include "tests/support/temporary_directory.h"

#include <net/if.h>
#include <net/if_types.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using fakes::FakeDictionary;
using fakes::FakeMac;
using fakes::FakeValue;

/// A port on a faked Mac.
template <typename Port>
struct OnFakes {
    FakeMac mac;
    Port made{};

    Port& port() { return made; }
    void fail() { mac.everythingFails = true; }
};

struct MacHost : OnFakes<MacMachHost> {
    MacHost() {
        mac.kernel.ticks.assign(12, {100, 50, 850, 0});
        mac.kernel.statistics.active_count = 500'000;
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, MachHostContract, MacHost);

struct MacControl : OnFakes<MacSystemControl> {
    MacControl() {
        auto& values = mac.kernel.values;
        values["hw.perflevel0.physicalcpu"] = std::int32_t{8};
        values["hw.perflevel1.physicalcpu"] = std::int32_t{4};
        values["hw.perflevel0.name"] = std::string("Performance");
        values["hw.perflevel1.name"] = std::string("Efficiency");
        values["hw.model"] = std::string("Mac14,9");
        values["kern.memorystatus_vm_pressure_level"] = std::int32_t{1};
        values["vm.swapusage"] = std::vector<std::uint8_t>(32);
        mac.kernel.bootTime = {1'749'532'020, 250'000};
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, SystemControlContract, MacControl);

struct MacInfo : OnFakes<MacProcessInfoService> {
    MacInfo() {
        mac.kernel.values["hw.memsize"] = std::uint64_t{34'359'738'368};
        mac.kernel.values["kern.osproductversion"] = std::string("14.5");
        mac.kernel.thermalPressure = 1;
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, ProcessInfoServiceContract, MacInfo);

struct MacVolumes : OnFakes<MacFileSystemStatistics> {
    MacVolumes() { mac.kernel.volumes["/"] = {4096, 242'745'344, 160'222'412}; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, FileSystemStatisticsContract, MacVolumes);

struct MacInterfaces : OnFakes<MacNetworkInterfaces> {
    MacInterfaces() {
        constexpr unsigned int active = IFF_UP | IFF_RUNNING;
        mac.kernel.interfaces = {
            {.name = "lo0", .flags = active | IFF_LOOPBACK, .family = AF_LINK, .type = IFT_LOOP},
            {.name = "lo0", .flags = active | IFF_LOOPBACK, .family = AF_INET, .ipv4 = {127, 0, 0, 1}},
            {.name = "en0",
             .flags = active,
             .family = AF_LINK,
             .type = IFT_ETHER,
             .receivedBytes = 1,
             .sentBytes = 1},
            {.name = "en0", .flags = active, .family = AF_INET, .ipv4 = {192, 168, 1, 5}}};
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, NetworkInterfacesContract, MacInterfaces);

struct MacSources : OnFakes<MacPowerSources> {
    MacSources() {
        mac.ioKit.powerSources = {FakeDictionary{{"Is Charging", {false}},
                                                 {"Power Source State", {std::string("Battery Power")}},
                                                 {"Current Capacity", {std::int64_t{87}}},
                                                 {"Max Capacity", {std::int64_t{100}}}}};
    }
    void removeBattery() { mac.ioKit.powerSources->clear(); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, PowerSourcesContract, MacSources);

struct MacController : OnFakes<MacSMCService> {
    MacController() {
        mac.ioKit.setKey("FNum", "ui8 ", {2});
        mac.ioKit.setKey("F0Tg", "flt ", {0, 0, 0, 0});
    }
    void removeController() { mac.ioKit.controllers = 0; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, SMCServiceContract, MacController);

struct MacSensors : OnFakes<MacHIDEventSystem> {
    MacSensors() {
        mac.ioKit.sensors = {{.product = FakeValue{std::string("PMU tdie1")}, .temperature = 61.5},
                             {.product = FakeValue{std::string("gas gauge battery")}, .temperature = 31.4},
                             {.product = std::nullopt, .temperature = std::nullopt}};
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, HIDEventSystemContract, MacSensors);

struct MacAssertions : OnFakes<MacPowerAssertions> {
    std::ptrdiff_t held() const { return std::ssize(mac.ioKit.assertions); }
    void refuse() { mac.ioKit.refusesAssertions = true; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, PowerAssertionsContract, MacAssertions);

/// The main thread of a faked Mac.
struct OnMainThread {
    FakeMac mac;
    MacClock clock;
    MacRunLoop runLoop{clock};

    template <typename Done>
    void runUntil(Done done) {
        for (int step = 0; step < 1000 && !done(); ++step) {
            mac.dispatch.runWork();
            mac.runLoop.advance(10ms);
        }
    }
    template <typename Done>
    void settle(Done) {
        mac.runLoop.runPending();
    }
};

struct MacPreferences : OnMainThread {
    MacUserDefaults made{runLoop};
    UserDefaults& port() { return made; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, UserDefaultsContract, MacPreferences);

struct MacSupplies : OnMainThread {
    MacPowerEvents made;
    PowerEvents& port() { return made; }
    void announce() { mac.ioKit.announcePowerSources(); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, PowerEventsContract, MacSupplies);

/// An interpreter of scripts, itself a script of the shell.
class Interpreter {
public:
    /// Returns its path.
    std::string replaceBy(const std::string& text) const {
        directory_.write("osascript", "#!/bin/sh\n" + text + "\n");
        chmod(path("osascript").c_str(), 0700);
        return path("osascript");
    }

    /// A file beside it.
    std::string path(const char* name) const { return directory_ / name; }

private:
    TemporaryDirectory directory_;
};

struct MacPowerModes : OnMainThread {
    MacPowerModeService made{runLoop};
    Interpreter interpreter;

    PowerModeService& port() { return made; }
    void failSwitch() { runScript("echo 'execution error: User canceled. (-128)'; exit 1"); }
    void succeedSwitch() { runScript("exit 0"); }

private:
    void runScript(const std::string& text) {
        MacScriptRunner(made, interpreter.replaceBy(text)).execute(powerModeScript("1"));
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, PowerModeServiceContract, MacPowerModes);

struct MacMainThread : OnMainThread {
    RunLoop& port() { return runLoop; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, RunLoopContract, MacMainThread);

struct MacCenter : OnMainThread {
    MacDistributedNotifications made{runLoop};
    DistributedNotifications& port() { return made; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, DistributedNotificationsContract, MacCenter);

struct MacFiles : OnMainThread {
    MacFileEvents made{runLoop};
    TemporaryDirectory directory;

    FileEvents& port() { return made; }
    std::string path() const { return directory / "command"; }
    void write(const std::string& text) {
        made.createIfMissing(path());
        directory.write("command", text);
    }
    void remove() const { std::filesystem::remove(path()); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, FileEventsContract, MacFiles);

struct MacClocks : OnFakes<MacClock> {
    MacClocks() {
        mac.kernel.uptime = 60'000'000'000;
        mac.kernel.asleep = 5'000'000'000;
    }
    void pass() { mac.kernel.uptime += 1'000; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, ClockContract, MacClocks);

TEST(MacClock, CountsSleepSinceBootOnly) {
    MacClocks subject;
    const Clock& clock = subject.port();
    const auto awake = clock.monotonicNow();
    EXPECT_EQ(clock.sinceBoot(), 65s);

    subject.mac.kernel.asleep += 10'000'000'000;

    EXPECT_EQ(clock.sinceBoot(), 75s);
    EXPECT_EQ(clock.monotonicNow(), awake);
}

struct MacCommands {
    MacCommandRunner made;

    std::optional<CommandOutput> run(const std::string& executable, const std::vector<std::string>& arguments) {
        return made.run(executable, arguments);
    }
    std::optional<CommandOutput> runKnown() { return run("/bin/sh", {"-c", "echo one; echo two"}); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, CommandRunnerContract, MacCommands);

/// Its interpreter understands the scripts that switch the power mode.
struct MacScripts : OnMainThread {
    MacPowerModeService powerModes{runLoop};
    Interpreter interpreter;
    MacScriptRunner made{powerModes, interpreter.replaceBy("mode=${4#*powermode }\n"
                                                           "[ \"$mode\" = \"$4\" ] || "
                                                           "printf %s \"${mode%%\\\"*}\" >\"${0%/*}/mode\"")};

    void execute(const std::string& source) { made.execute(source); }
    int mode() const {
        int mode = 0;
        std::ifstream(interpreter.path("mode")) >> mode;
        return mode;
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, ScriptRunnerContract, MacScripts);

}  // namespace
}  // namespace kestro
