#include "app/application.h"

#include "app/app_delegate.h"
#include "app/application_content.h"
#include "app/base/notification_names.h"
#include "app/standard_streams.h"
#include "core/settings/user_settings.h"
#include "core/telemetry/smc_reader.h"
#include "platform/macos/mac_machine.h"
#include "platform/macos/termination_signals.h"
#include "shell/macos/content_under_title_bar.h"
#include "shell/macos/mac_accessibility_monitor.h"
#include "shell/macos/mac_compositing.h"
#include "shell/macos/mac_single_instance.h"
#include "shell/macos/mac_status_bar.h"
#include "shell/macos/mac_window_system.h"
#include "shell/macos/quit_requests.h"
#include "shell/shell.h"

#include <QApplication>

#include <malloc/malloc.h>

#include <chrono>
#include <clocale>
#include <cstdlib>
#include <memory>
#include <string>

namespace kestro {

namespace {

using namespace std::chrono_literals;

/// Not `quit`, which asks every window first: the dashboard refuses to close.
void terminate() {
    QCoreApplication::exit(EXIT_SUCCESS);
}

/// Gives unused pages of every heap back to the system.
void trimMemory() {
    malloc_zone_pressure_relief(nullptr, 0);
}

int runFirstInstance(MacMachine& mac, NativeApplication& nativeApplication, const std::string& commandFile) {
    const auto nativeWindows = makeNativeWindows();
    const auto nativeEffects = makeNativeVisualEffects();
    const auto nativeAccessibility = makeNativeAccessibility();
    const MacCompositing compositing(*nativeEffects, UserSettings::shared());
    window_compositing::install(compositing);
    const MacAccessibilityMonitor accessibility(*nativeAccessibility);
    MacStatusBar statusBar;
    MacWindowSystem windowSystem(*nativeWindows, nativeApplication);
    AppDelegate delegate(mac.platform, sharedServices(), SMCReader::shared(), {statusBar, windowSystem},
                         kestroSurfaces(), {commandFile}, {.terminate = terminate, .trimMemory = trimMemory});
    delegate.applicationDidFinishLaunching();
    // Once the event loop runs, since the system's own handlers are installed when it starts.
    mac.runLoop.post(
        [&] { nativeApplication.handleEvents([&delegate] { delegate.showDashboard(); }, &terminate); });
    return QCoreApplication::exec();
}

/// Stored numbers, and those that other programs print for Kestro, have a decimal point. Names keep their
/// encoding.
void useDecimalPoints() {
    std::setlocale(LC_NUMERIC, "C");
    if (const char* const all = std::getenv("LC_ALL")) {
        setenv("LC_CTYPE", all, 1);
        unsetenv("LC_ALL");
    }
    setenv("LC_NUMERIC", "C", 1);
}

/// An application that macOS opens has no locale, so that ps(1) would encode names that are not ASCII.
void useUnicode() {
    if (std::getenv("LC_CTYPE") == nullptr && std::getenv("LANG") == nullptr) {
        setenv("LC_CTYPE", "UTF-8", 1);
    }
}

void discardMessage(QtMsgType, const QMessageLogContext&, const QString&) {}

}  // namespace

int runApplication(char** arguments, const std::string& commandFile) {
    qInstallMessageHandler(discardMessage);
    // The toolkit would make it the active application when it starts, at login for example.
    qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
    // Neither the program nor the toolkit reads the command line.
    int ownName = 1;
    QApplication application(ownName, arguments);
    standard_streams::abandon();
    useDecimalPoints();
    useUnicode();
    QCoreApplication::setApplicationName(QStringLiteral("Kestro"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const auto nativeApplication = makeNativeApplication();
    nativeApplication->becomeAccessory();
    nativeApplication->preventAppNap();

    MacMachine mac;
    const auto showDashboard = [&mac] { mac.platform.notifications.post(notification_names::showDashboard); };
    MacSingleInstance instance(MacSingleInstance::defaultLockFile(), showDashboard);
    if (!instance.isFirst()) {
        return EXIT_SUCCESS;
    }
    const TerminationSignals signals(&terminate);
    const QuitRequests quitRequests(&terminate);
    const ContentUnderTitleBar contentUnderTitleBar;
    Platform::install(mac.platform);
    const int result = runFirstInstance(mac, *nativeApplication, commandFile);
    mac.userDefaults.flush();
    // A process started from now on becomes the first instance and finds the preferences complete.
    instance.release();
    // Background work, such as a switch waiting for a password, must neither keep the process alive nor outlive
    // what it refers to.
    mac.commandRunner.stop();
    mac.scriptRunner.stop();
    if (!mac.runLoop.finishBackgroundTasks(1s)) {
        std::_Exit(result);
    }
    return result;
}

}  // namespace kestro
