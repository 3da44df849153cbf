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
#include "platform/simulated/simulated_power_sources.h"
#include "platform/simulated/simulated_process_info_service.h"
#include "platform/simulated/simulated_run_loop.h"
#include "platform/simulated/simulated_script_runner.h"
#include "platform/simulated/simulated_smc_service.h"
#include "platform/simulated/simulated_system_control.h"
#include "platform/simulated/simulated_user_defaults.h"

namespace kestro {

/// A whole machine behind every port, for tests and pictures. Its time stands still until a test turns it,
/// every call can be made to fail, and everything happens on the test's thread. Left alone it lives: load,
/// traffic, temperatures and fans move a little, the same in every run; frozen, they hold what was set.
class SimulatedMac {
public:
    SimulatedMac();
    SimulatedMac(const SimulatedMac&) = delete;
    SimulatedMac& operator=(const SimulatedMac&) = delete;

    /// The ports; valid as long as this object.
    const Platform& platform() const { return platform_; }

    /// Turns the clock and runs every timer and task that falls due on the way, in order.
    void advance(std::chrono::nanoseconds duration) { runLoop.advance(duration); }

    /// Runs the posted tasks, and the background tasks unless they are held; the clock stands still.
    void runPending() { runLoop.runPending(); }

    /// Stops all movement: counters stand still and readings are exactly what was set.
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
    SimulatedUserDefaults userDefaults;
    SimulatedDistributedNotifications notifications{runLoop};
    SimulatedFileEvents fileEvents{runLoop};

private:
    Platform platform_;
};

}  // namespace kestro
