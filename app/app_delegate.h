#pragma once

#include "app/base/coalesced_task.h"
#include "app/base/idle_release.h"
#include "app/command_channel.h"
#include "app/menus/main_menu.h"
#include "app/windows/screen_changes.h"
#include "app/windows/window_delegate.h"
#include "core/base/subscription.h"
#include "core/platform/distributed_notifications.h"
#include "shell/shell.h"
#include "shell/status_bar.h"
#include "ui/kestro_services.h"
#include "ui/surface_actions.h"

#include <QRect>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kestro {

class FanControlStatusItem;
class KeepAwakeStatusItem;
class KestroDashboardWindow;
class MainStatusItem;
class PopoverWindow;
class ReadoutPublication;
class SMCReader;
class SettingsWindow;
struct Platform;

/// Creates the content of each window as a child of `parent`, which it fills. Called when the window is first
/// shown.
struct SurfaceFactories {
    std::function<QWidget*(const KestroServices&, const PopoverActions&, QWidget* parent)> popover;
    std::function<QWidget*(const KestroServices&, const DashboardActions&, QWidget* parent)> dashboard;
    std::function<QWidget*(const KestroServices&, const SettingsActions&, QWidget* parent)> settings;
};

/// What the application asks of its process: to end it, and to return unused memory to the system.
struct ProcessActions {
    std::function<void()> terminate;
    std::function<void()> trimMemory;
};

/// The root of the application: owns the status items and the windows, handles clicks, menus, commands and
/// notifications, and lets the engine know whether any window is visible. Main thread; lives as long as the
/// application.
class AppDelegate final : public MenuCommands, public CommandTarget, public WindowDelegate {
public:
    /// Reads commands from each of `commandFiles`. Every reference outlives this object.
    AppDelegate(const Platform& platform, const KestroServices& services, SMCReader& smc, const Shell& shell,
                SurfaceFactories surfaces, std::vector<std::string> commandFiles, ProcessActions process);
    ~AppDelegate() override;
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    /// Builds everything, once, and starts to follow the engine, the settings and the command channel.
    void applicationDidFinishLaunching();

    /// Composes the readout from the current values and shows it if it changed.
    void updateStatusItemText();

    /// A plain click toggles the popover; a secondary one, or one with the control key, opens the menu.
    void statusItemClicked(StatusClick click, bool controlHeld, const QRect& anchor);

    void showContextMenu();

    void togglePopover() override;
    void showDashboard() override;
    void showDashboard(QSize size) override;
    void hideDashboard() override;
    void toggleDashboard() override;
    void showSettings() override;

    /// Notifies the engine whether the popover, the dashboard or the settings window is on the screen.
    void updateUIActiveState();

    /// Fits the dashboard to its sections, unless the user has resized it and `force` is false. Does nothing in
    /// full screen.
    void adjustDashboardSize(bool force);

    /// The width that the dashboard's visible sections need.
    int optimalDashboardWidth() const;

    /// Whether the user has resized the dashboard, which turns automatic sizing off. Never cleared.
    bool hasUserCustomResizedDashboard() const { return hasUserCustomResizedDashboard_; }

    /// The windows; null before launch, the settings window also before the first request.
    PopoverWindow* popover() const { return popover_.get(); }
    KestroDashboardWindow* dashboardWindow() const { return dashboardWindow_.get(); }
    SettingsWindow* settingsWindow() const { return settingsWindow_.get(); }

    // Commands.
    void toggleFullScreenAction() override;
    void togglePin() override;
    void selectSettingsTab(SettingsTab tab) override;
    void toggleFanLink() override;
    void selectFan(std::int64_t index) override;
    void selectCurvePreset(CurvePreset preset) override;
    void quit() override;

    // Window events.
    void popoverDidShow() override;
    void popoverDidClose() override;
    void windowVisibilityDidChange(QWidget& window) override;
    bool windowShouldClose(QWidget& window) override;
    void windowDidResize(QWidget& window) override;
    void windowWillEnterFullScreen(QWidget& window) override;
    void windowDidExitFullScreen(QWidget& window) override;

private:
    void setupPopover();
    void setupDashboardWindow();
    void setupSettingsWindow();
    void bindTelemetry();
    void bindDashboard();
    void observeNotifications();
    void publishReadout();

    /// Opens it at the anchor, or at the item if the anchor is null.
    void togglePopoverAt(const QRect& anchor);
    void handleShowSettingsNotification(const NotificationUserInfo& userInfo);
    void closePopover();
    void keepSettingsAboveDashboard();
    void screensDidChange();
    void releaseMemory();
    void refreshTelemetry();
    void addShortcuts(QWidget& window);
    void retain(Subscription subscription) { subscriptions_.push_back(std::move(subscription)); }

    const Platform& platform_;
    const KestroServices services_;
    SMCReader& smc_;
    const Shell shell_;
    const SurfaceFactories surfaces_;
    const std::vector<std::string> commandFiles_;
    const ProcessActions process_;

    ScreenChanges screenChanges_{[this] { screensDidChange(); }};
    std::unique_ptr<MainStatusItem> statusItem_;
    std::unique_ptr<KeepAwakeStatusItem> keepAwakeItem_;
    std::unique_ptr<FanControlStatusItem> fanItem_;
    std::unique_ptr<PopoverWindow> popover_;
    QRect popoverAnchor_;  ///< in another program's panel; null: at the item
    std::unique_ptr<KestroDashboardWindow> dashboardWindow_;
    std::unique_ptr<SettingsWindow> settingsWindow_;
    bool hasUserCustomResizedDashboard_ = false;

    CoalescedTask dashboardFit_;
    IdleRelease idleRelease_;
    std::vector<std::unique_ptr<CommandChannel>> commandChannels_;
    std::unique_ptr<ReadoutPublication> readoutPublication_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace kestro
