#pragma once

namespace kestro {

class Clock;
class CommandRunner;
class DistributedNotifications;
class FileEvents;
class FileSystemStatistics;
class HIDEventSystem;
class MachHost;
class NetworkInterfaces;
class PowerAssertions;
class PowerEvents;
class PowerModeService;
class PowerSources;
class ProcessInfoService;
class RunLoop;
class SMCService;
class ScriptRunner;
class SystemControl;
class UserDefaults;

/// Everything that the program needs from the machine and the session, as references that outlive all users.
struct Platform {
    Clock& clock;
    RunLoop& runLoop;
    MachHost& machHost;
    SystemControl& systemControl;
    ProcessInfoService& processInfo;
    FileSystemStatistics& fileSystem;
    NetworkInterfaces& networkInterfaces;
    PowerSources& powerSources;
    SMCService& smc;
    HIDEventSystem& hidEventSystem;
    CommandRunner& commandRunner;
    ScriptRunner& scriptRunner;
    PowerAssertions& powerAssertions;
    PowerEvents& powerEvents;
    PowerModeService& powerModeService;
    UserDefaults& userDefaults;
    DistributedNotifications& notifications;
    FileEvents& fileEvents;

    /// The ports of an object with a member for each, under the same name.
    template <typename Ports>
    static Platform of(Ports& ports) {
        return {
            .clock = ports.clock,
            .runLoop = ports.runLoop,
            .machHost = ports.machHost,
            .systemControl = ports.systemControl,
            .processInfo = ports.processInfo,
            .fileSystem = ports.fileSystem,
            .networkInterfaces = ports.networkInterfaces,
            .powerSources = ports.powerSources,
            .smc = ports.smc,
            .hidEventSystem = ports.hidEventSystem,
            .commandRunner = ports.commandRunner,
            .scriptRunner = ports.scriptRunner,
            .powerAssertions = ports.powerAssertions,
            .powerEvents = ports.powerEvents,
            .powerModeService = ports.powerModeService,
            .userDefaults = ports.userDefaults,
            .notifications = ports.notifications,
            .fileEvents = ports.fileEvents,
        };
    }

    /// The platform on which the process-wide shared objects are built. main calls `install` once; calling
    /// `current` before that is a bug.
    static const Platform& current();
    static void install(const Platform& platform);
};

}  // namespace kestro
