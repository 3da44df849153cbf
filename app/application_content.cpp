#include "app/application_content.h"

#include "core/cooling/fan_control_manager.h"
#include "core/engine/telemetry_engine.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_mode_manager.h"
#include "core/power/power_status.h"
#include "core/settings/user_settings.h"
#include "ui/dashboard/dashboard_view.h"
#include "ui/popover/menu_bar_popover_view.h"
#include "ui/settings/settings_view.h"

namespace kestro {

KestroServices sharedServices() {
    return {TelemetryEngine::shared(),  UserSettings::shared(),     FanControlManager::shared(),
            KeepAwakeManager::shared(), PowerModeManager::shared(), PowerStatus::shared()};
}

SurfaceFactories kestroSurfaces() {
    return {
        .popover = [](const KestroServices& services, const PopoverActions& actions, QWidget* parent) -> QWidget* {
            return new MenuBarPopoverView(services, actions, parent);
        },
        .dashboard = [](const KestroServices& services, const DashboardActions& actions,
                        QWidget* parent) -> QWidget* { return new DashboardView(services, actions, parent); },
        .settings = [](const KestroServices& services, const SettingsActions& actions,
                       QWidget* parent) -> QWidget* { return new SettingsView(services, actions, parent); },
    };
}

}  // namespace kestro
