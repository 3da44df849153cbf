#include "app/windows/surface_factories.h"

#include "app/windows/summary_view.h"

namespace kestro {

SurfaceFactories kestroSurfaces() {
    return {
        .popover = [](const KestroServices& services, const PopoverActions&,
                      QWidget* parent) { return new SummaryView(services, QStringLiteral("KESTRO"), parent); },
        .dashboard =
            [](const KestroServices& services, const DashboardActions&, QWidget* parent) {
                return new SummaryView(services, QStringLiteral("Kestro Studio Dashboard"), parent);
            },
        .settings =
            [](const KestroServices& services, const SettingsActions&, QWidget* parent) {
                return new SummaryView(services, QStringLiteral("Kestro Preferences"), parent);
            },
    };
}

}  // namespace kestro
