#include "app/app_delegate.h"

#include "app/application_icon.h"
#include "app/base/notification_names.h"
#include "app/readout_publication.h"
#include "app/status_items/fan_control_status_item.h"
#include "app/status_items/keep_awake_status_item.h"
#include "app/status_items/main_status_item.h"
#include "app/windows/dashboard_window.h"
#include "app/windows/popover_window.h"
#include "app/windows/settings_window.h"
#include "core/cooling/fan_control_manager.h"
#include "core/engine/telemetry_engine.h"
#include "core/platform/platform.h"
#include "core/power/keep_awake_manager.h"
#include "core/settings/user_settings.h"

#include <optional>
#include <string>
#include <utility>

namespace kestro {

AppDelegate::AppDelegate(const Platform& platform, const KestroServices& services, SMCReader& smc,
                         const Shell& shell, SurfaceFactories surfaces, std::vector<std::string> commandFiles,
                         ProcessActions process)
    : platform_(platform),
      services_(services),
      smc_(smc),
      shell_(shell),
      surfaces_(std::move(surfaces)),
      commandFiles_(std::move(commandFiles)),
      process_(std::move(process)),
      dashboardFit_(platform.runLoop, [this] { adjustDashboardSize(false); }),
      idleRelease_(platform.runLoop, platform.clock, [this] { releaseMemory(); }) {}

AppDelegate::~AppDelegate() {
    shell_.statusBar.onOverlayChanged({});
    shell_.windowSystem.onPanelsChanged({});
}

void AppDelegate::applicationDidFinishLaunching() {
    loadApplicationIcon(applicationIconFile());
    statusItem_ = std::make_unique<MainStatusItem>(
        platform_, shell_.statusBar, services_,
        StatusItemHandlers{
            .onClick = [this](StatusClick click, bool controlHeld,
                              const QRect& anchor) { statusItemClicked(click, controlHeld, anchor); },
            .buildMenu = [this] { return mainMenu(services_, *this); }});
    keepAwakeItem_ = std::make_unique<KeepAwakeStatusItem>(platform_, shell_.statusBar, services_.settings,
                                                           services_.keepAwake, services_.powerStatus);
    fanItem_ = std::make_unique<FanControlStatusItem>(platform_, shell_.statusBar, services_.settings, smc_,
                                                      services_.fanManager, services_.powerManager);
    shell_.statusBar.onOverlayChanged([this] { screenChanges_.report(); });
    shell_.windowSystem.onPanelsChanged([this] { screenChanges_.report(); });
    setupPopover();
    setupDashboardWindow();
    bindTelemetry();
    bindDashboard();
    for (const std::string& file : commandFiles_) {
        commandChannels_.push_back(std::make_unique<CommandChannel>(platform_.fileEvents, *this, file));
    }
    updateUIActiveState();
    observeNotifications();
    publishReadout();
}

void AppDelegate::updateStatusItemText() {
    if (statusItem_) {
        statusItem_->updateText();
    }
}

void AppDelegate::showContextMenu() {
    if (statusItem_) {
        statusItem_->openMenu();
    }
}

void AppDelegate::bindTelemetry() {
    // Fans can appear after launch: a header counts as a fan only once it has turned.
    retain(services_.engine.fans.subscribe([this](const auto& fans) { services_.fanManager.followFans(fans); }));
    retain(services_.engine.power.subscribe([this](const PowerTelemetry& power) {
        // A battery that external power holds at its charge limit is not charging, but is not in use either.
        services_.keepAwake.checkBatterySafeguard(power.percentage, power.isCharging || power.isPluggedIn);
    }));
}

void AppDelegate::observeNotifications() {
    DistributedNotifications& center = platform_.notifications;
    retain(center.observe(notification_names::togglePopover,
                          [this](const NotificationUserInfo&) { togglePopover(); }));
    retain(center.observe(notification_names::showDashboard,
                          [this](const NotificationUserInfo&) { showDashboard(); }));
    retain(center.observe(notification_names::showSettings, [this](const NotificationUserInfo& userInfo) {
        handleShowSettingsNotification(userInfo);
    }));
}

void AppDelegate::publishReadout() {
    if (shell_.readoutService == nullptr) {
        return;
    }
    readoutPublication_ = std::make_unique<ReadoutPublication>(
        *shell_.readoutService, services_, *statusItem_,
        ReadoutActions{.togglePopover =
                           [this](const QRect& anchor) {
                               // The click in the other program's panel may already have closed the popover.
                               if (!popover_->takesBack(QRect())) {
                                   togglePopoverAt(anchor);
                               }
                           },
                       .showDashboard = [this] { showDashboard(); },
                       .showSettings =
                           [this](std::optional<SettingsTab> tab) {
                               if (tab) {
                                   selectSettingsTab(*tab);
                               }
                               showSettings();
                           },
                       .buildMenu = [this] { return mainMenu(services_, *this); }});
}

void AppDelegate::handleShowSettingsNotification(const NotificationUserInfo& userInfo) {
    const auto entry = userInfo.find(notification_names::tabKey);
    const auto* label = entry != userInfo.end() ? std::get_if<std::string>(&entry->second) : nullptr;
    const auto tab = label != nullptr ? fromRawValue<SettingsTab>(*label) : std::nullopt;
    if (tab) {
        selectSettingsTab(*tab);
    }
    showSettings();
}

void AppDelegate::toggleFullScreenAction() {
    showDashboard();
    if (dashboardWindow_) {
        dashboardWindow_->toggleFullScreen();
    }
}

void AppDelegate::togglePin() {
    services_.settings.isPinned.set(!services_.settings.isPinned.get());
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

void AppDelegate::selectCurvePreset(CurvePreset preset) {
    services_.fanManager.applyPreset(preset);
}

void AppDelegate::quit() {
    process_.terminate();
}

}  // namespace kestro
