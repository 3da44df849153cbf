// Measures what the surfaces cost on the main thread, on the raster engine and without a window system.
// The floor of a repaint is one blit of the same area.

#include "bench/paired.h"
#include "tests/support/simulated_services.h"
#include "ui/popover/menu_bar_popover_view.h"
#include "ui/settings/settings_view.h"
#include "ui/theme/kestro_theme.h"
#include "ui/theme/motion.h"

#include <QApplication>
#include <QImage>
#include <QPainter>

#include <memory>

namespace kestro::bench {
namespace {

using namespace std::chrono_literals;

/// Delivers what a change has caused: layout and painting.
void deliver() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents();
}

std::unique_ptr<MenuBarPopoverView> makePopover(SimulatedServices& services) {
    return std::make_unique<MenuBarPopoverView>(services.services(), PopoverActions{});
}

/// One blit of a surface of this size.
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

void measurePopover() {
    SimulatedServices services;
    KestroTheme::bind(&services.settings());
    services.settle();
    const auto view = makePopover(services);
    view->show();
    deliver();
    const Work blit = blitOf(view->size());

    // Sampling is not part of a repaint: what changes is prepared while nobody looks.
    std::vector<double> repaints;
    for (int tick = 0; tick < 200; ++tick) {
        services.advance(1s);
        repaints.push_back(cost(deliver));
    }
    printRow("popover: repaint after a tick", fmt::format("{:.1f} us", median(repaints) / 1000), "", "", "2 ms");

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
    KestroTheme::bind(nullptr);
}

std::unique_ptr<SettingsView> makeSettings(SimulatedServices& services) {
    return std::make_unique<SettingsView>(services.services(), SettingsActions{});
}

/// The cooling tab, which has the most to build and the chart to keep current.
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
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    kestro::motion::setReduced(true);
    kestro::bench::printHeader("Surfaces");
    kestro::bench::measurePopover();
    kestro::bench::measureSettings();
}
