#pragma once

#include "app/app_delegate.h"
#include "tests/app/windows/plain_window_system.h"
#include "tests/shell/fake_status_bar.h"
#include "tests/support/simulated_services.h"
#include "ui/theme/kestro_theme.h"

#include <chrono>
#include <functional>
#include <string>

namespace kestro::drills {

/// The whole application with its real views, on a simulated machine and without a screen.
struct FaultyKestro {
    /// `arrange` makes the machine faulty before the application is created.
    explicit FaultyKestro(const std::function<void(SimulatedMac&)>& arrange);
    ~FaultyKestro();

    /// Runs everything pending in the simulated and in the toolkit's loop.
    void settle();

    /// Advances the simulated clock and paints once.
    void pass(std::chrono::seconds time);

    void openEverything();
    void closeEverything();

    /// Writes a word into the command file.
    void command(const std::string& word);

    std::string readout() { return bar.item(QStringLiteral("kestro-main")).content.title.text.toStdString(); }

    /// Lets the views use the palette of these settings.
    struct ThemeBinding {
        explicit ThemeBinding(const UserSettings& settings) { KestroTheme::bind(&settings); }
        ~ThemeBinding() { KestroTheme::bind(nullptr); }
        ThemeBinding(const ThemeBinding&) = delete;
        ThemeBinding& operator=(const ThemeBinding&) = delete;
    };

    SimulatedServices simulated;
    ThemeBinding theme{simulated.settings()};
    SimulatedMac& mac = simulated.mac;
    test::FakeStatusBar bar;
    test::PlainWindowSystem windowSystem;
    AppDelegate delegate;
};

}  // namespace kestro::drills
