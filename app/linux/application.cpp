#include "app/application.h"

#include "app/app_delegate.h"
#include "app/application_content.h"
#include "app/base/notification_names.h"
#include "app/standard_streams.h"
#include "core/platform/platform.h"
#include "core/power/keep_awake_manager.h"
#include "core/telemetry/smc_reader.h"
#include "platform/desktop/bus_link.h"
#include "platform/desktop/bus_lock_services.h"
#include "platform/desktop/bus_notifications.h"
#include "platform/desktop/bus_probe.h"
#include "platform/desktop/desktop_power_assertions.h"
#include "platform/desktop/json_user_defaults.h"
#include "platform/desktop/power_profile_script_runner.h"
#include "platform/desktop/power_profiles.h"
#include "platform/desktop/qt_run_loop.h"
#include "platform/desktop/session_command_runner.h"
#include "platform/desktop/unix_signal_notifier.h"
#include "platform/desktop/wayland_lock.h"
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
#include "platform/linux/sensors/sleeping_devices.h"
#include "shell/linux/accessibility_monitor.h"
#include "shell/linux/bus_single_instance.h"
#include "shell/linux/desktop_status_bar.h"
#include "shell/linux/linux_window_system.h"
#include "shell/linux/memory_trim.h"
#include "shell/linux/platform_choice.h"
#include "shell/linux/readout/bus_readout_service.h"
#include "shell/linux/x11_compositing.h"
#include "shell/linux/x11_screen_saver.h"
#include "shell/shell.h"

#include <QApplication>

#include <chrono>
#include <clocale>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestro {

namespace {

using namespace std::chrono_literals;

/// A new connection to a bus, to replace one that was lost or late. A bus that has not answered `probe` is asked
/// no second time, so that it costs nothing to look again.
BusLink::Connect reconnecting(QDBusConnection::BusType type, std::shared_ptr<BusProbe> probe = nullptr) {
    return [type, probe = std::move(probe)]() mutable {
        const bool isSession = type == QDBusConnection::SessionBus;
        const bool isAsked = probe && probe->isUnanswered();
        if (!isAsked) {
            probe =
                std::make_shared<BusProbe>(isSession ? BusProbe::sessionAddresses() : BusProbe::systemAddresses());
        }
        if (!probe->answersWithin(isAsked ? 0ms : 50ms)) {
            return QDBusConnection(QString());
        }
        static int count = 0;
        return QDBusConnection::connectToBus(type, QStringLiteral("kestro-bus-%1").arg(++count));
    };
}

/// The system bus, or no connection if it does not answer. It has had the time that the toolkit took to start, and
/// the status item does not wait for it.
QDBusConnection systemBusIfAnswering(BusProbe& probe) {
    return probe.answersWithin(10ms) ? QDBusConnection::systemBus() : QDBusConnection(QString());
}

/// The machine and the session behind the ports. Construction reads the preferences and sets a damaged file
/// aside, so only the first instance creates one.
struct LinuxDesktop {
    LinuxDesktop(const QDBusConnection& session, const std::shared_ptr<BusProbe>& systemProbe,
                 BusNotifications& sessionNotifications)
        : sessionBus(session),
          systemBus(systemBusIfAnswering(*systemProbe)),
          systemLink(systemBus, reconnecting(QDBusConnection::SystemBus, systemProbe)),
          notifications(sessionNotifications) {
        if (systemProbe->isUnanswered()) {
            systemLink.connectLater(50ms);
        }
    }

    const QDBusConnection sessionBus;
    const QDBusConnection systemBus;
    BusLink sessionLink{sessionBus, reconnecting(QDBusConnection::SessionBus)};
    BusLink systemLink;
    BusNotifications& notifications;

    LinuxClock clock;
    QtRunLoop runLoop;
    LinuxMachHost machHost{clock};
    LinuxSystemControl systemControl{clock};
    LinuxProcessInfoService processInfo{clock};
    LinuxFileSystemStatistics fileSystem;
    LinuxNetworkInterfaces networkInterfaces;
    LinuxPowerSources powerSources{clock};
    std::shared_ptr<SleepingDevices> sleepingDevices = std::make_shared<SleepingDevices>();
    LinuxSMCService smc{clock, "/", sleepingDevices};
    LinuxHIDEventSystem hidEventSystem{clock, "/", sleepingDevices};
    LinuxPowerEvents powerEvents{runLoop};
    PowerProfiles powerModeService{systemLink};
    LinuxCommandRunner programs;
    SessionCommandRunner commandRunner{powerModeService, programs};
    PowerProfileScriptRunner scriptRunner{powerModeService};
    X11ScreenSaver screenSaver;
    BusLockServices lockServices{
        sessionLink,
        systemLink,
        {.suspendScreenSaver = [this](bool suspended) { return screenSaver.suspend(suspended); },
         .session = {.isSandboxed = BusLockServices::runsSandboxed(),
                     .isWayland = BusLockServices::runsOnWayland()},
         .waylandSocket = WaylandLock::socketOfSession()}};
    DesktopPowerAssertions powerAssertions{lockServices, qEnvironmentVariable("XDG_CURRENT_DESKTOP")};
    JsonUserDefaults userDefaults{runLoop, JsonUserDefaults::defaultPath()};
    LinuxFileEvents fileEvents{runLoop};

    const Platform platform = Platform::of(*this);
};

/// The program's end, and whether it has been asked for.
class Termination {
public:
    /// Not `quit`, which asks every window first: the dashboard refuses to close.
    void begin() {
        hasBegun_ = true;
        QCoreApplication::exit(EXIT_SUCCESS);
    }

    /// Also true once a signal to end has arrived, even if the event loop has not handled it yet.
    bool hasBegun() {
        signals_.deliver();
        return hasBegun_;
    }

private:
    bool hasBegun_ = false;
    UnixSignalNotifier signals_{[this](int) { begin(); }};
};

/// The file in the user's runtime directory, which no other user can create first.
std::optional<std::string> ownCommandFile() {
    const char* const directory = std::getenv("XDG_RUNTIME_DIR");
    return directory != nullptr && directory[0] == '/' ? std::optional(std::string(directory) + "/kestro.cmd")
                                                       : std::nullopt;
}

int runFirstInstance(LinuxDesktop& desktop, const std::string& commandFile, Termination& termination) {
    std::vector<std::string> commandFiles{commandFile};
    if (const auto own = ownCommandFile()) {
        commandFiles.push_back(*own);
    }
    const AccessibilityMonitor accessibility(desktop.sessionBus);
    DesktopStatusBar statusBar;
    LinuxWindowSystem windowSystem(statusBar);
    BusReadoutService readoutService(desktop.sessionBus,
                                     [&statusBar](bool isHosted) { statusBar.setReadoutHosted(isHosted); });
    AppDelegate delegate(desktop.platform, sharedServices(), SMCReader::shared(),
                         {statusBar, windowSystem, &readoutService}, kestroSurfaces(), commandFiles,
                         {.terminate = [&termination] { termination.begin(); }, .trimMemory = trimMemory});
    delegate.applicationDidFinishLaunching();
    return QCoreApplication::exec();
}

/// Disables what this program does not use but would pay for in memory: the desktop's widget theme (every
/// surface paints itself with the fonts and colours of the settings), the input method (there are no text
/// fields), and the toolkit's look at the portal, which would start it. Also its registration with the session
/// manager: a saved session would start the program at login in addition to the autostart entry, and that second
/// start would show the dashboard; a manager that does not answer would block the start.
void prepareToolkit() {
    QGuiApplication::setDesktopSettingsAware(false);
    qputenv("QT_IM_MODULE", "none");
    qputenv("QT_NO_XDG_DESKTOP_PORTAL", "1");
    QCoreApplication::setAttribute(Qt::AA_DisableSessionManager);
}

bool isDisplayOpen = false;

std::string describeVariable(const char* name) {
    const char* const value = std::getenv(name);
    return std::string(name) + (value != nullptr ? " is \"" + std::string(value) + "\"" : " is not set");
}

/// Discards the toolkit's messages. Without a display, the toolkit would end the program with a core dump.
void discardMessage(QtMsgType type, const QMessageLogContext&, const QString&) {
    if (type == QtFatalMsg && !isDisplayOpen) {
        standard_streams::complain("kestro: cannot open a display: " + describeVariable("DISPLAY") + ", " +
                                   describeVariable("WAYLAND_DISPLAY"));
        std::_Exit(EXIT_FAILURE);
    }
}

/// Makes every connection to a session bus that does not answer fail at once, here and in the toolkit. Longer than
/// a healthy bus takes, even while the session starts: for the rest of its life, the program does without this
/// bus.
void avoidSilentSessionBus() {
    if (!BusProbe(BusProbe::sessionAddresses()).answersWithin(1s)) {
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    }
}

}  // namespace

int runApplication(char** arguments, const std::string& commandFile) {
    qInstallMessageHandler(discardMessage);
    const auto systemProbe = std::make_shared<BusProbe>(BusProbe::systemAddresses());
    avoidSilentSessionBus();
    prepareToolkit();
    choosePlatform();
    const X11Compositing compositing;
    window_compositing::install(compositing);
    // Neither the program nor the toolkit reads the command line.
    int ownName = 1;
    QApplication application(ownName, arguments);
    isDisplayOpen = true;
    standard_streams::abandon();
    // The application object sets the user's locale; stored numbers always use a decimal point.
    std::setlocale(LC_NUMERIC, "C");
    QCoreApplication::setApplicationName(QStringLiteral("Kestro"));
    QGuiApplication::setDesktopFileName(QStringLiteral("kestro"));
    QGuiApplication::setQuitOnLastWindowClosed(false);

    const QDBusConnection sessionBus = QDBusConnection::sessionBus();
    BusNotifications notifications(sessionBus);
    Termination termination;
    const auto showDashboard = [&notifications, &termination] {
        if (termination.hasBegun()) {
            return false;
        }
        notifications.post(notification_names::showDashboard);
        return true;
    };
    BusSingleInstance instance(sessionBus, BusSingleInstance::currentDisplay(), showDashboard);
    if (!instance.isFirst() || termination.hasBegun()) {
        return EXIT_SUCCESS;
    }
    LinuxDesktop desktop(sessionBus, systemProbe, notifications);
    Platform::install(desktop.platform);
    desktop.userDefaults.flushAtExit();
    const int result = runFirstInstance(desktop, commandFile, termination);
    // Before the blocking calls below, which reach the buses after the released locks.
    KeepAwakeManager::shared().deactivate();
    desktop.userDefaults.flush();
    // A process started from now on becomes the first instance and finds the preferences complete.
    instance.release();
    // Background work, such as a switch waiting for a password, must neither keep the process alive nor outlive
    // what it refers to.
    if (!desktop.runLoop.finishBackgroundTasks(1s)) {
        std::_Exit(result);
    }
    return result;
}

}  // namespace kestro
