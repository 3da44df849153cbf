#include "app/windows/surface_factories.h"

#include "ui/dashboard/dashboard_view.h"
#include "ui/popover/menu_bar_popover_view.h"
#include "ui/settings/settings_view.h"

namespace kestro {

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
