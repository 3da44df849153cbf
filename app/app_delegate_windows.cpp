#include "app/app_delegate.h"
#include "app/menus/shortcuts.h"
#include "app/status_items/main_status_item.h"
#include "app/windows/dashboard_window.h"
#include "app/windows/popover_window.h"
#include "app/windows/settings_window.h"
#include "core/engine/telemetry_engine.h"
#include "core/platform/platform.h"
#include "core/settings/user_settings.h"
#include "shell/window_system.h"
#include "ui/dashboard/dashboard_width.h"
#include "ui/paint/text_caches.h"
#include "ui/symbols/symbol_cache.h"

#include <QShortcut>

#include <functional>
#include <initializer_list>
#include <utility>

// The application's windows: showing them, handling their events, and reporting their visibility.

namespace kestro {

void AppDelegate::setupPopover() {
    const PopoverActions actions{
        .onOpenDashboard =
            [this] {
                closePopover();
                showDashboard();
            },
        .onOpenSettings =
            [this] {
                closePopover();
                showSettings();
            },
        .onQuit = [this] { quit(); },
    };
    popover_ = std::make_unique<PopoverWindow>(
        *this, shell_.windowSystem, platform_.clock,
        [this, actions](QWidget* parent) { return surfaces_.popover(services_, actions, parent); });
    addShortcuts(*popover_);
}

void AppDelegate::setupDashboardWindow() {
    const DashboardActions actions{
        .onOpenSettings = [this] { showSettings(); },
        .onToggleFullScreen = [this] { dashboardWindow_->zoom(); },
        .onClose = [this] { dashboardWindow_->close(); },
    };
    const auto makeContent = [this, actions](QWidget* parent) {
        return surfaces_.dashboard(services_, actions, parent);
    };
    dashboardWindow_ =
        std::make_unique<KestroDashboardWindow>(*this, shell_.windowSystem, makeContent, optimalDashboardWidth());
    addShortcuts(*dashboardWindow_);
}

void AppDelegate::setupSettingsWindow() {
    const SettingsActions actions{.onClose = [this] { settingsWindow_->close(); }};
    settingsWindow_ = std::make_unique<SettingsWindow>(
        *this, shell_.windowSystem,
        [this, actions](QWidget* parent) { return surfaces_.settings(services_, actions, parent); });
    shell_.windowSystem.setFloatingLevel(*settingsWindow_, services_.settings.isPinned.get());
    addShortcuts(*settingsWindow_);
}

void AppDelegate::bindDashboard() {
    UserSettings& settings = services_.settings;
    const auto followPin = [this](bool isPinned) {
        if (!dashboardWindow_->isFullScreen()) {
            shell_.windowSystem.setFloatingLevel(*dashboardWindow_, isPinned);
        }
        if (settingsWindow_) {
            shell_.windowSystem.setFloatingLevel(*settingsWindow_, isPinned);
        }
    };
    followPin(settings.isPinned.get());
    retain(settings.isPinned.subscribe(followPin));
    for (const Setting<bool>* section : dashboardSectionSwitches(settings)) {
        retain(section->subscribe([this](bool) {
            if (dashboardWindow_->isVisible()) {
                dashboardFit_.request();
            }
        }));
    }
}

void AppDelegate::statusItemClicked(StatusClick click, bool controlHeld, const QRect& anchor) {
    const bool hasClosedPopover = popover_ && popover_->takesBack(statusItem_->geometry());
    if (click == StatusClick::secondary || controlHeld) {
        showContextMenu();
        return;
    }
    statusItem_->setLastAnchor(anchor);
    if (!hasClosedPopover) {
        togglePopover();
    }
}

void AppDelegate::togglePopover() {
    togglePopoverAt(QRect());
}

void AppDelegate::togglePopoverAt(const QRect& anchor) {
    if (!popover_) {
        return;
    }
    if (popover_->isShown()) {
        popover_->orderOut();
    } else {
        refreshTelemetry();
        popoverAnchor_ = anchor;
        popover_->showRelativeTo(anchor.isNull() ? statusItem_->anchor() : anchor);
    }
    updateUIActiveState();
}

void AppDelegate::closePopover() {
    if (popover_) {
        popover_->orderOut();
    }
}

void AppDelegate::showDashboard() {
    if (!dashboardWindow_) {
        return;
    }
    adjustDashboardSize(false);
    dashboardWindow_->fitToScreen();
    refreshTelemetry();
    shell_.windowSystem.makeKeyAndOrderFront(*dashboardWindow_);
    updateUIActiveState();
}

void AppDelegate::showDashboard(QSize size) {
    showDashboard();
    if (dashboardWindow_) {
        dashboardWindow_->resizeKeepingOrigin(size);
    }
}

void AppDelegate::hideDashboard() {
    if (dashboardWindow_) {
        dashboardWindow_->orderOut();
    }
    updateUIActiveState();
}

void AppDelegate::toggleDashboard() {
    if (dashboardWindow_ && dashboardWindow_->isOnScreen()) {
        hideDashboard();
    } else {
        showDashboard();
    }
}

void AppDelegate::showSettings() {
    if (!settingsWindow_) {
        setupSettingsWindow();
    }
    settingsWindow_->fitToScreen();
    keepSettingsAboveDashboard();
    shell_.windowSystem.makeKeyAndOrderFront(*settingsWindow_);
    updateUIActiveState();
}

void AppDelegate::keepSettingsAboveDashboard() {
    if (dashboardWindow_) {
        shell_.windowSystem.keepAbove(*settingsWindow_,
                                      dashboardWindow_->isOnScreen() ? dashboardWindow_.get() : nullptr);
    }
}

void AppDelegate::screensDidChange() {
    if (statusItem_) {
        statusItem_->screensDidChange();
    }
    if (popover_ && popover_->isShown()) {
        popover_->moveBeside(popoverAnchor_.isNull() ? statusItem_->anchor() : popoverAnchor_);
    }
    if (dashboardWindow_ && dashboardWindow_->isVisible()) {
        dashboardWindow_->fitToScreen();
    }
    if (settingsWindow_ && settingsWindow_->isVisible()) {
        settingsWindow_->fitToScreen();
    }
}

void AppDelegate::refreshTelemetry() {
    // While no window is visible, the engine takes this sample itself when a window appears. A second sample at
    // the same moment, the one that is displayed, would have no interval over which to measure loads and rates.
    if (services_.engine.isUIActive.get()) {
        services_.engine.sampleFull();
    }
}

void AppDelegate::updateUIActiveState() {
    const bool isActive = (popover_ && popover_->isShown()) ||
                          (dashboardWindow_ && dashboardWindow_->isOnScreen()) ||
                          (settingsWindow_ && settingsWindow_->isOnScreen());
    services_.engine.setUIActive(isActive);
    idleRelease_.setActive(isActive);
}

void AppDelegate::releaseMemory() {
    const std::initializer_list<SurfaceWindow*> windows{popover_.get(), dashboardWindow_.get(),
                                                        settingsWindow_.get()};
    for (SurfaceWindow* window : windows) {
        if (window != nullptr) {
            window->releaseContent();
        }
    }
    releaseTextCaches();
    releaseSymbolCache();
    process_.trimMemory();
}

int AppDelegate::optimalDashboardWidth() const {
    return dashboardWidth(visibleDashboardSections(services_.settings));
}

void AppDelegate::adjustDashboardSize(bool force) {
    if (!dashboardWindow_ || dashboardWindow_->isFullScreen() || (hasUserCustomResizedDashboard_ && !force)) {
        return;
    }
    dashboardWindow_->fitWidth(optimalDashboardWidth());
}

void AppDelegate::popoverDidShow() {
    updateUIActiveState();
}

void AppDelegate::popoverDidClose() {
    updateUIActiveState();
}

void AppDelegate::windowVisibilityDidChange(QWidget& window) {
    if (&window == dashboardWindow_.get() && settingsWindow_ && settingsWindow_->isVisible()) {
        keepSettingsAboveDashboard();
    }
    updateUIActiveState();
}

bool AppDelegate::windowShouldClose(QWidget& window) {
    if (&window != dashboardWindow_.get()) {
        return true;
    }
    hideDashboard();
    return false;
}

void AppDelegate::windowDidResize(QWidget& window) {
    if (&window == dashboardWindow_.get() && !dashboardWindow_->isFullScreen()) {
        hasUserCustomResizedDashboard_ = true;
    }
}

void AppDelegate::windowWillEnterFullScreen(QWidget& window) {
    if (&window == dashboardWindow_.get()) {
        shell_.windowSystem.setFloatingLevel(window, false);
    }
}

void AppDelegate::windowDidExitFullScreen(QWidget& window) {
    if (&window == dashboardWindow_.get()) {
        shell_.windowSystem.setFloatingLevel(window, services_.settings.isPinned.get());
    }
}

void AppDelegate::addShortcuts(QWidget& window) {
    const std::pair<QString, std::function<void()>> commands[] = {
        {shortcuts::toggleDashboard, [this] { toggleDashboard(); }},
        {shortcuts::toggleFullScreen, [this] { toggleFullScreenAction(); }},
        {shortcuts::toggleFullScreenInWindow, [this] { toggleFullScreenAction(); }},
        {shortcuts::openSettings, [this] { showSettings(); }},
        {shortcuts::togglePin, [this] { togglePin(); }},
        {shortcuts::quit, [this] { quit(); }},
        {shortcuts::closeWindow, [&window] { window.close(); }},
    };
    for (const auto& [key, action] : commands) {
        new QShortcut(QKeySequence::fromString(key, QKeySequence::PortableText), &window, action);
    }
}

}  // namespace kestro
