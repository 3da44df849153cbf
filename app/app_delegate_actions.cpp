#include "app/app_delegate.h"
#include "app/windows/dashboard_window.h"
#include "core/cooling/fan_control_manager.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_mode_manager.h"
#include "core/settings/user_settings.h"

#include <string>

// Actions of menus, clicks and commands.

namespace kestro {

void AppDelegate::showContextMenu() {
    if (statusItem_) {
        statusItem_->openMenu();
    }
}

StatusMenu AppDelegate::contextMenu() {
    const MainMenuState state{
        .isPinned = services_.settings.isPinned.get(),
        .isKeepAwakeActive = services_.keepAwake.isActive.get(),
        .currentDuration = services_.keepAwake.currentDuration.get(),
        .remainingTime = QString::fromStdString(services_.keepAwake.formattedRemainingTime()),
        .fanProfile = services_.fanManager.currentProfile.get(),
        .powerMode = services_.powerManager.currentMode.get(),
    };
    return mainMenu(state, *this);
}

void AppDelegate::togglePopoverAction() {
    togglePopover();
}

void AppDelegate::toggleFullScreenAction() {
    showDashboard();
    if (dashboardWindow_) {
        dashboardWindow_->toggleFullScreen();
    }
}

void AppDelegate::openSettingsAction() {
    showSettings();
}

void AppDelegate::togglePin() {
    services_.settings.isPinned.set(!services_.settings.isPinned.get());
}

void AppDelegate::toggleKeepAwakeAction() {
    services_.keepAwake.toggle();
}

void AppDelegate::selectKeepAwakeDuration(KeepAwakeDuration duration) {
    services_.keepAwake.activate(duration);
}

void AppDelegate::selectFanProfile(FanProfile profile) {
    services_.fanManager.setProfile(profile);
}

void AppDelegate::selectCurvePreset(CurvePreset preset) {
    services_.fanManager.applyPreset(preset);
}

void AppDelegate::selectPowerMode(SystemPowerMode mode) {
    services_.powerManager.setPowerMode(mode);
}

void AppDelegate::selectSettingsTab(SettingsTab tab) {
    services_.settings.selectedSettingsTab.set(tab);
}

void AppDelegate::toggleFanLink() {
    services_.fanManager.toggleLinking();
}

void AppDelegate::selectFan(std::int64_t index) {
    services_.settings.selectedFanIndex.set(index);
}

void AppDelegate::quit() {
    terminate_();
}

}  // namespace kestro
