#pragma once

#include "app/app_delegate.h"
#include "app/windows/dashboard_window.h"
#include "app/windows/popover_window.h"
#include "app/windows/settings_window.h"
#include "tests/app/menus/menu_reading.h"
#include "tests/app/simulated_kestro.h"
#include "tests/app/windows/plain_window_system.h"
#include "tests/shell/fake_readout_service.h"
#include "tests/shell/fake_status_bar.h"
#include "ui/theme/motion.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace kestro::test {

/// The whole application on a simulated machine, with an in-memory status bar and offscreen windows without
/// content; windows move without animation.
struct AppDelegateFixture : testing::Test, SimulatedKestro {
    const QString mainItem = QStringLiteral("kestro-main");
    FakeStatusBar bar;
    PlainWindowSystem windowSystem;
    FakeReadoutService readoutService;
    PopoverActions popoverActions;
    DashboardActions dashboardActions;
    SettingsActions settingsActions;
    int contentsMade = 0;
    int terminations = 0;
    int trims = 0;
    const std::string commandFile = "/commands";
    const std::string ownCommandFile = "/run/commands";
    AppDelegate delegate{mac.platform(),
                         services(),
                         smc,
                         {bar, windowSystem, &readoutService},
                         surfaces(),
                         {commandFile, ownCommandFile},
                         {.terminate = [this] { ++terminations; }, .trimMemory = [this] { ++trims; }}};

    AppDelegateFixture() { motion::setReduced(true); }
    ~AppDelegateFixture() override { motion::setReduced(false); }

    SurfaceFactories surfaces() {
        const auto content = [this](QWidget* parent) {
            ++contentsMade;
            return new QWidget(parent);
        };
        return {
            .popover = [this, content](const KestroServices&, const PopoverActions& actions,
                                       QWidget* parent) { return popoverActions = actions, content(parent); },
            .dashboard = [this, content](const KestroServices&, const DashboardActions& actions,
                                         QWidget* parent) { return dashboardActions = actions, content(parent); },
            .settings = [this, content](const KestroServices&, const SettingsActions& actions,
                                        QWidget* parent) { return settingsActions = actions, content(parent); },
        };
    }

    void launch() {
        delegate.applicationDidFinishLaunching();
        settle();
    }

    /// Runs everything pending in the simulated and in the window system's loop.
    void settle() {
        mac.runPending();
        QApplication::processEvents();
        mac.runPending();
    }

    void command(const std::string& word) {
        mac.fileEvents.write(commandFile, word);
        settle();
    }

    void notify(const std::string& name, const NotificationUserInfo& userInfo = {}) {
        mac.notifications.post(name, userInfo);
        settle();
    }

    void click(StatusClick click = StatusClick::primary, bool controlHeld = false) {
        bar.click(mainItem, click, controlHeld, {700, 0, 40, 20});
        settle();
    }

    bool pickFromMenu(const char* title) {
        const bool picked = pick(bar.menu(mainItem), QString::fromUtf8(title));
        settle();
        return picked;
    }

    const StatusContent& shown() { return bar.item(mainItem).content; }
    bool isPopoverShown() const { return delegate.popover()->isVisible(); }
    bool isDashboardShown() const { return delegate.dashboardWindow()->isVisible(); }
    bool isSettingsShown() const {
        return delegate.settingsWindow() != nullptr && delegate.settingsWindow()->isVisible();
    }
};

}  // namespace kestro::test
