#pragma once

#include "tests/support/simulated_services.h"
#include "ui/controls/control.h"
#include "ui/dashboard/dashboard_view.h"
#include "ui/popover/menu_bar_popover_view.h"
#include "ui/settings/settings_view.h"
#include "ui/theme/kestro_theme.h"

#include <QApplication>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kestro {

/// Builds the content of a window; its actions append a letter to `asked`.
using MakeSurface = std::function<std::unique_ptr<QWidget>(const KestroServices&, std::string& asked)>;

/// A surface on its own simulated machine, in the active window.
class Surface {
public:
    explicit Surface(const MakeSurface& make) {
        KestroTheme::bind(&services_.settings());
        services_.mac.freeze();
        services_.settle();
        view_ = make(services_.services(), asked_);
        view_->show();
        view_->activateWindow();
        QApplication::processEvents();
    }

    ~Surface() {
        view_.reset();
        KestroTheme::bind(nullptr);
    }

    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    QWidget& view() { return *view_; }
    SimulatedServices& services() { return services_; }
    const std::string& asked() const { return asked_; }

    std::vector<Control*> focusable() const {
        std::vector<Control*> found;
        for (Control* control : view_->findChildren<Control*>()) {
            if (control->isVisible() && control->isEnabled() && control->focusPolicy() != Qt::NoFocus) {
                found.push_back(control);
            }
        }
        return found;
    }

private:
    SimulatedServices services_;
    std::string asked_;
    std::unique_ptr<QWidget> view_;
};

/// Every surface, the settings once for each tab, with its name.
inline std::vector<std::pair<std::string, MakeSurface>> everySurface() {
    std::vector<std::pair<std::string, MakeSurface>> surfaces;
    surfaces.emplace_back("popover", [](const KestroServices& services, std::string& asked) {
        return std::make_unique<MenuBarPopoverView>(
            services,
            PopoverActions{[&asked] { asked += 'd'; }, [&asked] { asked += 's'; }, [&asked] { asked += 'q'; }});
    });
    surfaces.emplace_back("dashboard", [](const KestroServices& services, std::string& asked) {
        auto view = std::make_unique<DashboardView>(
            services,
            DashboardActions{[&asked] { asked += 's'; }, [&asked] { asked += 'f'; }, [&asked] { asked += 'c'; }});
        view->resize(1260, 480);
        return view;
    });
    for (const SettingsTab tab : allCases<SettingsTab>()) {
        const auto make = [tab](const KestroServices& services, std::string& asked) {
            services.settings.selectedSettingsTab.set(tab);
            return std::make_unique<SettingsView>(services, SettingsActions{[&asked] { asked += 'c'; }});
        };
        surfaces.emplace_back("settings: " + std::string(rawValue(tab)), make);
    }
    return surfaces;
}

}  // namespace kestro
