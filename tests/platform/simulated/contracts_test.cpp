#include "platform/simulated/simulated_mac.h"
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

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestro {
namespace {

using namespace std::chrono_literals;

struct Simulated {
    SimulatedMac mac;

    /// Nothing on this machine happens by itself.
    template <typename Done>
    void runUntil(Done done) {
        for (int step = 0; step < 1000 && !done(); ++step) {
            mac.advance(10ms);
        }
    }
    template <typename Done>
    void settle(Done) {
        mac.runPending();
    }
};

struct SimulatedHost : Simulated {
    MachHost& port() { return mac.machHost; }
    void fail() {
        mac.machHost.processorInfoFailure.always();
        mac.machHost.statisticsFailure.always();
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, MachHostContract, SimulatedHost);

struct SimulatedControl : Simulated {
    SystemControl& port() { return mac.systemControl; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, SystemControlContract, SimulatedControl);

struct SimulatedInfo : Simulated {
    ProcessInfoService& port() { return mac.processInfo; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, ProcessInfoServiceContract, SimulatedInfo);

struct SimulatedVolumes : Simulated {
    FileSystemStatistics& port() { return mac.fileSystem; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, FileSystemStatisticsContract, SimulatedVolumes);

struct SimulatedInterfaces : Simulated {
    NetworkInterfaces& port() { return mac.networkInterfaces; }
    void fail() { mac.networkInterfaces.interfacesFailure.always(); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, NetworkInterfacesContract, SimulatedInterfaces);

struct SimulatedSources : Simulated {
    PowerSources& port() { return mac.powerSources; }
    void removeBattery() { mac.powerSources.removeBattery(); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, PowerSourcesContract, SimulatedSources);

struct SimulatedSupplies : Simulated {
    PowerEvents& port() { return mac.powerEvents; }
    void announce() { mac.powerEvents.announce(); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, PowerEventsContract, SimulatedSupplies);

struct SimulatedModes : Simulated {
    PowerModeService& port() { return mac.powerModeService; }
    void failSwitch() {
        mac.powerModeService.set(
            {.failedSwitch = PowerModeConditions::FailedSwitch{1, PowerModeConditions::Failure::denied}});
    }
    void succeedSwitch() { mac.powerModeService.set({}); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, PowerModeServiceContract, SimulatedModes);

struct SimulatedController : Simulated {
    SMCService& port() { return mac.smc; }
    void removeController() { mac.smc.openFailure.always(); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, SMCServiceContract, SimulatedController);

struct SimulatedSensors : Simulated {
    HIDEventSystem& port() { return mac.hidEventSystem; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, HIDEventSystemContract, SimulatedSensors);

struct SimulatedPreferences : Simulated {
    UserDefaults& port() { return mac.userDefaults; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, UserDefaultsContract, SimulatedPreferences);

struct SimulatedFiles : Simulated {
    FileEvents& port() { return mac.fileEvents; }
    static std::string path() { return "/tmp/command"; }
    void write(const std::string& text) { mac.fileEvents.write(path(), text); }
    void remove() { mac.fileEvents.remove(path()); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, FileEventsContract, SimulatedFiles);

struct SimulatedMainThread : Simulated {
    RunLoop& port() { return mac.runLoop; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, RunLoopContract, SimulatedMainThread);

struct SimulatedAssertionsOfASession : Simulated {
    PowerAssertions& port() { return mac.powerAssertions; }
    std::int64_t held() const { return mac.assertionsHeld(); }
    void refuse() { mac.powerAssertions.refusal.always(); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, PowerAssertionsContract, SimulatedAssertionsOfASession);

struct SimulatedCenter : Simulated {
    DistributedNotifications& port() { return mac.notifications; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, DistributedNotificationsContract, SimulatedCenter);

struct SimulatedClocks : Simulated {
    SimulatedClocks() { mac.clock.uptimeAtStart = 3h; }
    Clock& port() { return mac.clock; }
    void pass() { mac.advance(1ms); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, ClockContract, SimulatedClocks);

struct SimulatedCommands : Simulated {
    std::optional<CommandOutput> run(const std::string& executable, const std::vector<std::string>& arguments) {
        return mac.commandRunner.run(executable, arguments);
    }
    std::optional<CommandOutput> runKnown() { return run("/usr/bin/pmset", {"-g"}); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, CommandRunnerContract, SimulatedCommands);

struct SimulatedScripts : Simulated {
    void execute(const std::string& source) { mac.scriptRunner.execute(source); }
    std::int64_t mode() const { return mac.commandRunner.powerMode; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, ScriptRunnerContract, SimulatedScripts);

}  // namespace
}  // namespace kestro
