// Measures the cost of the surfaces on the main thread, with the raster engine and without a window system. The
// floor of a repaint is one blit of the same area.

#include "bench/paired.h"
#include "tests/support/sealed_environment.h"
#include "tests/support/simulated_services.h"
#include "ui/dashboard/dashboard_view.h"
#include "ui/popover/menu_bar_popover_view.h"
#include "ui/settings/settings_view.h"
#include "ui/theme/kestro_theme.h"
#include "ui/theme/motion.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QProcess>

#include <memory>
#include <string_view>

namespace kestro::bench {
namespace {

using namespace std::chrono_literals;

/// Delivers the results of a change: layout and painting.
void deliver() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents();
}

std::unique_ptr<MenuBarPopoverView> makePopover(SimulatedServices& services) {
    return std::make_unique<MenuBarPopoverView>(services.services(), PopoverActions{});
}

/// One blit of a surface of the given size.
Work blitOf(QSize size) {
    auto source = std::make_shared<QImage>(size, QImage::Format_ARGB32_Premultiplied);
    auto target = std::make_shared<QImage>(size, QImage::Format_ARGB32_Premultiplied);
    source->fill(Qt::black);
    return [source, target] {
        QPainter painter(target.get());
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(0, 0, *source);
    };
}

std::string microseconds(double nanoseconds) {
    return fmt::format("{:.1f} us", nanoseconds / 1000);
}

/// Excludes sampling, which happens before the measured repaint.
double repaintAfterTick(SimulatedServices& services) {
    std::vector<double> repaints;
    for (int tick = 0; tick < 200; ++tick) {
        services.advance(1s);
        repaints.push_back(cost(deliver));
    }
    return median(repaints);
}

double showAgain(QWidget& view) {
    std::vector<double> shows;
    for (int round = 0; round < 50; ++round) {
        view.hide();
        deliver();
        shows.push_back(cost([&view] {
            view.show();
            deliver();
        }));
    }
    return median(shows);
}

void measurePopover() {
    SimulatedServices services;
    KestroTheme::bind(&services.settings());
    services.settle();
    const auto view = makePopover(services);
    view->show();
    deliver();
    const Work blit = blitOf(view->size());

    printRow("popover: repaint after a tick", microseconds(repaintAfterTick(services)), "", "", "2 ms");

    printPair("popover: repaint of everything",
              measure(
                  [&] {
                      view->update();
                      deliver();
                  },
                  blit, 200),
              "2 ms");
    services.mac.freeze();
    services.advance(3s);
    deliver();
    printPair("popover: tick that changes nothing", measure(deliver, blit, 200), "");

    printPair("popover: made, shown and painted",
              measure(
                  [&] {
                      const auto fresh = makePopover(services);
                      fresh->show();
                      deliver();
                  },
                  blit, 50),
              "60 ms");
    printRow("popover: shown again and painted", microseconds(showAgain(*view)), "", "", "60 ms");
    KestroTheme::bind(nullptr);
}

/// With ten processes, wide enough for all five sections, at the toolkit's scale.
void measureDashboard(bool isFine) {
    SimulatedServices services;
    KestroTheme::bind(&services.settings());
    services.settings().processCountLimit.set(10);
    services.settle();
    DashboardView view(services.services(), DashboardActions{});
    view.resize(1260, 480);
    view.show();
    deliver();
    const Work blit = blitOf(view.size() * view.devicePixelRatioF());
    const Work repaint = [&] {
        view.update();
        deliver();
    };
    const std::string scale = isFine ? ", scale 2" : "";

    printPair("dashboard: repaint of everything" + scale, measure(repaint, blit, 200), isFine ? "16 ms" : "6 ms");
    printRow("dashboard: repaint after a tick" + scale, microseconds(repaintAfterTick(services)), "", "", "3 ms");
    printRow("dashboard: shown and painted" + scale, microseconds(showAgain(view)), "", "", "80 ms");
    services.mac.freeze();
    services.advance(3s);
    deliver();
    printPair("dashboard: tick that changes nothing" + scale, measure(deliver, blit, 200), "");
    KestroTheme::bind(nullptr);
}

std::unique_ptr<SettingsView> makeSettings(SimulatedServices& services) {
    return std::make_unique<SettingsView>(services.services(), SettingsActions{});
}

/// The cooling tab, which is the most expensive to build and keeps its chart up to date.
void measureSettings() {
    SimulatedServices services;
    KestroTheme::bind(&services.settings());
    services.settle();
    Setting<SettingsTab>& tab = services.settings().selectedSettingsTab;
    tab.set(SettingsTab::cooling);
    const auto view = makeSettings(services);
    view->show();
    deliver();
    const Work blit = blitOf(view->size());

    std::vector<double> repaints;
    for (int tick = 0; tick < 100; ++tick) {
        services.advance(1s);
        repaints.push_back(cost(deliver));
    }
    printRow("settings: repaint after a tick", fmt::format("{:.1f} us", median(repaints) / 1000), "", "", "10 ms");

    FanCurveConfig curve = services.fanManager().leftCurve.get();
    printPair("settings: one step of a slider",
              measure(
                  [&] {
                      curve.lowTemp = curve.lowTemp < 60 ? curve.lowTemp + 1 : 30;
                      services.fanManager().updateCurve(0, curve);
                      deliver();
                  },
                  blit, 100),
              "16 ms");
    const auto change = [&] {
        tab.set(tab.get() == SettingsTab::cooling ? SettingsTab::menubar : SettingsTab::cooling);
        deliver();
    };
    change();
    printPair("settings: another tab", measure(change, blit, 100), "16 ms");

    services.mac.freeze();
    services.advance(3s);
    deliver();
    printPair("settings: tick that changes nothing", measure(deliver, blit, 100), "");

    tab.set(SettingsTab::cooling);
    printPair("settings: made, shown and painted",
              measure(
                  [&] {
                      const auto fresh = makeSettings(services);
                      fresh->show();
                      deliver();
                  },
                  blit, 30),
              "120 ms");
    KestroTheme::bind(nullptr);
}

}  // namespace
}  // namespace kestro::bench

int main(int argc, char** argv) {
    const bool isFine = argc > 1 && std::string_view(argv[1]) == "--fine";
    const kestro::SealedEnvironment environment(isFine ? "2" : "1");
    QApplication application(argc, argv);
    kestro::motion::setReduced(true);
    if (isFine) {
        kestro::bench::measureDashboard(true);
        return 0;
    }
    kestro::bench::printHeader("Surfaces");
    kestro::bench::measurePopover();
    kestro::bench::measureSettings();
    kestro::bench::measureDashboard(false);
    // The toolkit supports one scale per process.
    return QProcess::execute(QApplication::applicationFilePath(), {QStringLiteral("--fine")});
}
