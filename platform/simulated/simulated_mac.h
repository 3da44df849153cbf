#pragma once

#include "core/platform/platform.h"
#include "platform/simulated/simulated_clock.h"
#include "platform/simulated/simulated_command_runner.h"
#include "platform/simulated/simulated_distributed_notifications.h"
#include "platform/simulated/simulated_file_events.h"
#include "platform/simulated/simulated_file_system_statistics.h"
#include "platform/simulated/simulated_hid_event_system.h"
#include "platform/simulated/simulated_mach_host.h"
#include "platform/simulated/simulated_network_interfaces.h"
#include "platform/simulated/simulated_pattern.h"
#include "platform/simulated/simulated_power_assertions.h"
#include "platform/simulated/simulated_power_events.h"
#include "platform/simulated/simulated_power_mode_service.h"
#include "platform/simulated/simulated_power_sources.h"
#include "platform/simulated/simulated_process_info_service.h"
#include "platform/simulated/simulated_run_loop.h"
#include "platform/simulated/simulated_script_runner.h"
#include "platform/simulated/simulated_smc_service.h"
#include "platform/simulated/simulated_system_control.h"
#include "platform/simulated/simulated_user_defaults.h"

namespace kestro {

/// A whole machine behind every port, for tests and screenshots. Time advances only on request, every call can be
/// made to fail, and everything runs on the test's thread. By default it is live: load, traffic, temperatures and
/// fans fluctuate slightly, identically in every run. Frozen, they keep their set values.
class SimulatedMac {
public:
    SimulatedMac();
    ~SimulatedMac();
    SimulatedMac(const SimulatedMac&) = delete;
    SimulatedMac& operator=(const SimulatedMac&) = delete;

    /// The ports; valid as long as this object exists.
    const Platform& platform() const { return platform_; }

    /// Advances the clock and runs every timer and task that falls due, in order.
    void advance(std::chrono::nanoseconds duration) { runLoop.advance(duration); }

    /// Runs posted tasks, and background tasks unless they are held, without advancing the clock.
    void runPending() { runLoop.runPending(); }

    /// Stops all fluctuation: counters stop and readings equal their set values.
    void freeze() { pattern.freeze(); }

    std::int64_t assertionsHeld() const { return std::ssize(powerAssertions.held()); }

    SimulatedClock clock;
    SimulatedPattern pattern{clock};
    SimulatedRunLoop runLoop{clock};
    SimulatedMachHost machHost{pattern};
    SimulatedSystemControl systemControl;
    SimulatedProcessInfoService processInfo;
    SimulatedFileSystemStatistics fileSystem;
    SimulatedNetworkInterfaces networkInterfaces{pattern};
    SimulatedPowerSources powerSources;
    SimulatedSMCService smc{pattern};
    SimulatedHIDEventSystem hidEventSystem{pattern};
    SimulatedCommandRunner commandRunner{pattern};
    SimulatedScriptRunner scriptRunner{commandRunner};
    SimulatedPowerAssertions powerAssertions;
    SimulatedPowerEvents powerEvents;
    SimulatedPowerModeService powerModeService;
    SimulatedUserDefaults userDefaults;
    SimulatedDistributedNotifications notifications{runLoop};
    SimulatedFileEvents fileEvents{runLoop};

private:
    Platform platform_;
};

}  // namespace kestro
