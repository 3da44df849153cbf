#include "core/engine/telemetry_engine.h"
#include "core/platform/platform.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_mode_manager.h"
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

#include <fmt/format.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace kestro {

namespace {

/// Every port of a Mac.
struct Mac {
    MacClock clock;
    MacRunLoop runLoop{clock};
    MacMachHost machHost;
    MacSystemControl systemControl;
    MacProcessInfoService processInfo;
    MacFileSystemStatistics fileSystem;
    MacNetworkInterfaces networkInterfaces;
    MacPowerSources powerSources;
    MacSMCService smc;
    MacHIDEventSystem hidEventSystem;
    MacCommandRunner commandRunner;
    MacPowerModeService powerModeService{runLoop};
    MacScriptRunner scriptRunner{powerModeService};
    MacPowerAssertions powerAssertions;
    MacPowerEvents powerEvents;
    MacUserDefaults userDefaults;
    MacDistributedNotifications notifications{runLoop};
    MacFileEvents fileEvents{runLoop};

    const Platform platform = Platform::of(*this);
};

/// Samples the machine twice and prints a line for each source.
void printSamples() {
    auto& engine = TelemetryEngine::shared();
    engine.sampleFull();
    engine.sampleFull();
    fmt::print("{}, {}, {}\n", engine.macModel(), engine.macOSVersion(), engine.uptimeString());
    fmt::print("{} cores, {} of {} bytes in use\n", engine.cpu.get().coreCount, engine.memory.get().usedBytes,
               engine.memory.get().totalBytes);
    fmt::print("{} sensors, {:.1f} degrees, {} fans\n", engine.thermals.get().sensorCount,
               engine.thermals.get().averageSoCTemp, engine.fans.get().size());
    fmt::print("{} bytes free, {} on {}\n", engine.disk.get().freeBytes, engine.network.get().localIP,
               engine.network.get().primaryInterface);
    fmt::print("battery {:.0f} %\n", engine.power.get().percentage);
}

}  // namespace

}  // namespace kestro

/// Links every port and everything above that needs no toolkit; on a Mac it prints what they read.
int main() {
    static kestro::Mac mac;
    kestro::Platform::install(mac.platform);
    kestro::printSamples();
    std::fflush(stdout);
    kestro::KeepAwakeManager::shared().toggle();
    kestro::PowerModeManager::shared().refreshPowerMode();
    mac.commandRunner.stop();
    mac.runLoop.finishBackgroundTasks(std::chrono::seconds(1));
    std::_Exit(0);
}
