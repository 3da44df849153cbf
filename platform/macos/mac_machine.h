#pragma once

#include "core/platform/platform.h"
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

namespace kestro {

/// Every port of a Mac.
struct MacMachine {
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
    MacUserDefaults userDefaults{runLoop};
    MacDistributedNotifications notifications{runLoop};
    MacFileEvents fileEvents{runLoop};

    const Platform platform = Platform::of(*this);
};

}  // namespace kestro
