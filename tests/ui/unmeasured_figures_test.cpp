#include "tests/support/simulated_services.h"
#include "tests/ui/controls/view_test.h"
#include "ui/controls/badge.h"
#include "ui/controls/text_label.h"
#include "ui/dashboard/compute_section.h"
#include "ui/dashboard/cooling_section.h"
#include "ui/dashboard/dashboard_view.h"
#include "ui/dashboard/io_section.h"
#include "ui/fancurve/fan_curve_canvas_view.h"
#include "ui/format/unmeasured.h"
#include "ui/popover/menu_bar_popover_view.h"
#include "ui/popover/readout_line.h"
#include "ui/settings/settings_view.h"

#include <algorithm>
#include <array>
#include <memory>

namespace kestro {
namespace {

const QString help = QStringLiteral("Not measured: this machine has no such sensor");

/// The surfaces on a machine without temperature sensors and without a battery, such as a virtual one.
class UnmeasuredFigures : public testing::Test {
protected:
    UnmeasuredFigures() {
        motion::setReduced(true);
        KestroTheme::bind(&services.settings());
        services.settle();
    }
    ~UnmeasuredFigures() override {
        surface.reset();
        KestroTheme::bind(nullptr);
        motion::setReduced(false);
    }

    void showPopover() {
        show(std::make_unique<MenuBarPopoverView>(services.services(), PopoverActions{[] {}, [] {}, [] {}}));
    }
    void showDashboard() {
        auto view = std::make_unique<DashboardView>(services.services(), DashboardActions{[] {}, [] {}, [] {}});
        view->resize(1260, 480);
        show(std::move(view));
    }
    void showSettings(SettingsTab tab) {
        services.settings().selectedSettingsTab.set(tab);
        show(std::make_unique<SettingsView>(services.services(), SettingsActions{[] {}}));
    }

    /// The visible view whose spoken name starts like this; none is a failure.
    const View& named(const char* beginning) const {
        const auto views = surface->findChildren<View*>();
        const auto found = std::ranges::find_if(views, [&](const View* view) {
            return view->isVisible() && view->accessibleInfo().name.startsWith(QString::fromUtf8(beginning));
        });
        if (found == views.end()) {
            throw std::runtime_error(std::string("no view is named ") + beginning);
        }
        return **found;
    }

    bool saysSo(const char* beginning) const {
        const View& view = named(beginning);
        return view.help() == help && view.accessibleInfo().description.contains(help);
    }

    /// Whether the view paints anything in a colour with a hue.
    static bool isLit(const View& view) {
        QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::black);
        const_cast<View&>(view).render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor color = image.pixelColor(x, y);
                // The greys of the texts are slightly blue.
                if (color.hsvSaturation() > 80 && color.value() > 40) {
                    return true;
                }
            }
        }
        return false;
    }

    void measureEverything() {
        services.mac.hidEventSystem.sensors = {{"PMU tdie1", 61.5}, {"battery", 31.0}};
        services.mac.powerSources.setBattery(87, false);
        services.advance(std::chrono::seconds(2));
        QApplication::processEvents();
    }

    SimulatedServices services{[](SimulatedMac& mac) {
        mac.hidEventSystem.sensors.clear();
        mac.powerSources.removeBattery();
    }};
    std::unique_ptr<QWidget> surface;

private:
    void show(std::unique_ptr<QWidget> widget) {
        surface = std::move(widget);
        surface->show();
        QApplication::processEvents();
    }
};

TEST_F(UnmeasuredFigures, AreMarkedInThePopover) {
    showPopover();

    for (const char* figure : {"Dual Fan RPM & Thermals, SoC 50.0°C", "Peak Die, 50.0°C", "Battery, 100%"}) {
        EXPECT_TRUE(saysSo(figure)) << figure;
        EXPECT_FALSE(isLit(named(figure))) << figure;
    }
    EXPECT_FALSE(saysSo("Unified Memory"));
    measureEverything();
    for (const char* figure : {"Dual Fan RPM & Thermals, SoC 61.5°C", "Peak Die, 61.5°C", "Battery, 87%"}) {
        EXPECT_FALSE(saysSo(figure)) << figure;
    }
}

TEST_F(UnmeasuredFigures, AreMarkedInTheDashboard) {
    showDashboard();

    for (const char* figure :
         {"SoC Junction Temp, 50.0°C", "Peak Die Temp, 50.0°C", "Battery Pack Temp, 32.0°C",
          "Thermal Pressure, Nominal", "Battery, AC", "Condition, Normal", "Temperatures, Not measured"}) {
        EXPECT_TRUE(saysSo(figure)) << figure;
        EXPECT_FALSE(isLit(named(figure))) << figure;
    }
    EXPECT_FALSE(saysSo("Local IP"));
    measureEverything();
    for (const char* figure :
         {"SoC Junction Temp, 61.5°C", "Peak Die Temp, 61.5°C", "Battery Pack Temp, 31.0°C",
          "Thermal Pressure, Nominal", "Battery, 87%", "Condition, Normal", "Temperatures, Nominal"}) {
        EXPECT_FALSE(saysSo(figure)) << figure;
    }
    EXPECT_TRUE(isLit(named("SoC Junction Temp")));
}

TEST_F(UnmeasuredFigures, HaveGaugesWithoutAnArc) {
    services.mac.smc.setFans({});
    services.advance(std::chrono::seconds(2));

    showDashboard();

    for (const char* gauge : {"SoC Die, 50 °C", "Peak Die, 50 °C"}) {
        EXPECT_TRUE(saysSo(gauge)) << gauge;
        EXPECT_FALSE(isLit(named(gauge))) << gauge;
    }
    measureEverything();
    EXPECT_FALSE(saysSo("SoC Die, 61 °C"));
    EXPECT_TRUE(isLit(named("SoC Die, 61 °C")));
}

TEST_F(UnmeasuredFigures, StayMarkedIfOnlyAnotherSensorExists) {
    services.mac.hidEventSystem.sensors = {{"NAND CH0 temp", 38.2}};
    services.advance(std::chrono::seconds(2));

    showDashboard();

    EXPECT_TRUE(saysSo("SoC Junction Temp, 50.0°C"));
    EXPECT_FALSE(saysSo("Peak Die Temp, 38.2°C"));
    EXPECT_TRUE(saysSo("Battery Pack Temp, 32.0°C"));
    EXPECT_FALSE(saysSo("Temperatures, Cool"));
}

TEST_F(UnmeasuredFigures, KeepAPressureThatTheSystemReports) {
    services.mac.processInfo.state = 2;
    services.advance(std::chrono::seconds(2));

    showDashboard();

    EXPECT_FALSE(saysSo("Thermal Pressure, Serious"));
}

TEST_F(UnmeasuredFigures, AreMarkedInTheChart) {
    showSettings(SettingsTab::cooling);
    const auto& chart = *surface->findChild<FanCurveCanvasView*>();

    EXPECT_FALSE(chart.reading().isMeasured);
    EXPECT_EQ(chart.help(), help);
    EXPECT_TRUE(chart.accessibleInfo().description.endsWith(help));
    measureEverything();
    EXPECT_TRUE(chart.reading().isMeasured);
    EXPECT_TRUE(chart.help().isEmpty());
    EXPECT_FALSE(chart.accessibleInfo().description.contains(help));
}

TEST_F(UnmeasuredFigures, AreMarkedInTheChartOfAMissingFan) {
    measureEverything();
    services.mac.smc.setFans({});
    services.fanManager().followFans({});
    services.advance(std::chrono::seconds(2));
    showSettings(SettingsTab::cooling);

    EXPECT_FALSE(surface->findChild<FanCurveCanvasView*>()->reading().isMeasured);
}

TEST_F(UnmeasuredFigures, AreMarkedInThePowerSettings) {
    showSettings(SettingsTab::power);

    for (const char* figure : {"100%", "Health Condition: Normal"}) {
        EXPECT_TRUE(saysSo(figure)) << figure;
    }
    EXPECT_FALSE(saysSo("AC Connected (No Battery)"));
    EXPECT_EQ(static_cast<const TextLabel&>(named("100%")).style().ink,
              Ink(KestroTheme::textPrimary).faded(unmeasuredOpacity));
    measureEverything();
    EXPECT_FALSE(saysSo("87%"));
    EXPECT_FALSE(saysSo("Health Condition: Normal"));
    EXPECT_EQ(static_cast<const TextLabel&>(named("87%")).style().ink, Ink(KestroTheme::textPrimary));
}

TEST_F(UnmeasuredFigures, OfAFreshlyOpenedWindowAreNotZero) {
    services.engine().setUIActive(false);
    services.advance(std::chrono::hours(1));
    services.engine().setUIActive(true);

    showDashboard();

    for (const char* figure : {"CPU load, not measured yet", "User, not measured yet", "Performance, --",
                               "Download, not measured yet", "Upload, not measured yet"}) {
        EXPECT_FALSE(isLit(named(figure))) << figure;
    }
    EXPECT_EQ(surface->findChild<CoreMatrixView*>()->accessibleParts()[0].name,
              QStringLiteral("Core 0, not measured yet"));
    services.advance(std::chrono::seconds(1));
    for (const char* figure : {"CPU load, ", "User, ", "Performance, ", "Download, ", "Upload, "}) {
        EXPECT_FALSE(named(figure).accessibleInfo().name.contains(pendingWords())) << figure;
    }
}

}  // namespace
}  // namespace kestro
