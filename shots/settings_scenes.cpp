#include "shots/scene.h"
#include "shots/sheet.h"
#include "ui/controls/card.h"
#include "ui/controls/words.h"
#include "ui/fancurve/fan_curve_canvas_view.h"
#include "ui/settings/module_row.h"
#include "ui/settings/settings_view.h"

#include <QApplication>
#include <QMouseEvent>
#include <QVBoxLayout>

namespace kestro::shots {

namespace {

Scene tabScene(const QString& name, SettingsTab tab, std::function<void(SimulatedServices&)> drive = {}) {
    Scene scene;
    scene.name = QStringLiteral("settings-") + name;
    scene.drive = [tab, drive = std::move(drive)](SimulatedServices& services) {
        services.settings().selectedSettingsTab.set(tab);
        if (drive) {
            drive(services);
        }
    };
    scene.make = [](SimulatedServices& services) {
        return std::make_unique<SettingsView>(services.services(), SettingsActions{[] {}});
    };
    return scene;
}

/// Every tab in the window that a screen of 1024 x 600 leaves.
void addSmall(std::vector<Scene>& scenes) {
    for (const SettingsTab tab : allCases<SettingsTab>()) {
        const QString word = QString(Words(rawValue(tab))).section(QLatin1Char(' '), 0, 0).toLower();
        Scene small = tabScene(QStringLiteral("small-") + word, tab);
        small.make = [](SimulatedServices& services) {
            auto view = std::make_unique<SettingsView>(services.services(), SettingsActions{[] {}});
            view->resize(860, 568);
            return view;
        };
        scenes.push_back(std::move(small));
    }
}

/// The whole cooling tab, unscrolled.
Scene tallScene(const QString& name, std::function<void(SimulatedServices&)> drive) {
    Scene scene = tabScene(name, SettingsTab::cooling, std::move(drive));
    scene.make = [](SimulatedServices& services) {
        auto view = std::make_unique<SettingsView>(services.services(), SettingsActions{[] {}});
        view->resize(860, 1160);
        return view;
    };
    return scene;
}

void addCooling(std::vector<Scene>& scenes) {
    scenes.push_back(tabScene(QStringLiteral("cooling"), SettingsTab::cooling));
    scenes.push_back(tallScene(QStringLiteral("cooling-linked"), [](SimulatedServices& services) {
        services.fanManager().applyPreset(CurvePreset::quietStudio);
    }));
    scenes.push_back(tallScene(QStringLiteral("cooling-independent"), [](SimulatedServices& services) {
        if (services.fanManager().isLinked.get()) {
            services.fanManager().toggleLinking();
        }
        services.settings().selectedFanIndex.set(1);
        FanCurveConfig config = services.fanManager().rightCurve.get();
        config.curveShape = CurveShape::stepped;
        services.fanManager().updateCurve(1, config);
    }));
    Scene unmeasured = tallScene(QStringLiteral("cooling-unmeasured"), {});
    unmeasured.arrange = [](SimulatedMac& mac) { mac.hidEventSystem.sensors.clear(); };
    scenes.push_back(std::move(unmeasured));
    Scene fanless = tabScene(QStringLiteral("cooling-fanless"), SettingsTab::cooling);
    fanless.arrange = [](SimulatedMac& mac) { mac.smc.setFans({}); };
    scenes.push_back(std::move(fanless));
}

/// Every module on, which overflows the bar, and one of them being dragged.
Scene crowdedScene() {
    Scene scene =
        tabScene(QStringLiteral("menubar-crowded"), SettingsTab::menubar, [](SimulatedServices& services) {
            const auto& all = allCases<MenubarModuleType>();
            services.settings().activeMenubarModules.set({all.begin(), all.end()});
            services.settings().showDedicatedFanItem.set(true);
            services.keepAwake().activate(KeepAwakeDuration::hours4);
        });
    scene.work = [](QWidget& view) {
        const auto rows = view.findChildren<ModuleRow*>();
        const auto send = [&rows](QEvent::Type type, const QPoint& position) {
            QMouseEvent event(type, position, rows[0]->mapToGlobal(position), Qt::LeftButton, Qt::LeftButton,
                              Qt::NoModifier);
            QApplication::sendEvent(rows[0], &event);
        };
        send(QEvent::MouseButtonPress, {60, 14});
        send(QEvent::MouseMove, {74, 14 + 3 * ModuleRow::rowHeight});
    };
    return scene;
}

/// A battery in use that reports capacities, a full one that reports percentages only, and no battery.
void addPower(std::vector<Scene>& scenes) {
    const auto add = [&scenes](const char* name, std::function<void(SimulatedMac&)> arrange) {
        scenes.push_back(tabScene(QString::fromUtf8(name), SettingsTab::power));
        scenes.back().arrange = std::move(arrange);
    };
    add("power", [](SimulatedMac& mac) {
        PowerSourceDescription& battery = *mac.powerSources.descriptions.front();
        battery["Current Capacity"] = std::int64_t{5288};
        battery["Max Capacity"] = std::int64_t{6075};
    });
    add("power-charging", [](SimulatedMac& mac) { mac.powerSources.setBattery(57, true); });
    add("power-ac", [](SimulatedMac& mac) { mac.powerSources.removeBattery(); });
}

void addPalettes(std::vector<Scene>& scenes) {
    for (const ThemePalette palette : allCases<ThemePalette>()) {
        const QString name = QString(Words(rawValue(palette))).section(QLatin1Char(' '), -1).toLower();
        const auto paint = [palette](SimulatedServices& services) {
            services.settings().themePalette.set(palette);
            services.settings().showDedicatedFanItem.set(true);
        };
        scenes.push_back(tallScene(QStringLiteral("cooling-") + name, paint));
        scenes.push_back(tabScene(QStringLiteral("menubar-") + name, SettingsTab::menubar, paint));
        scenes.push_back(tabScene(QStringLiteral("appearance-") + name, SettingsTab::appearance, paint));
    }
}

FanCurveReading reading(const FanCurveConfig& config, double temperature, double rpm) {
    FanCurveReading reading;
    reading.config = config;
    reading.currentTemp = temperature;
    reading.currentRPM = rpm;
    reading.targetRPM = config.evaluateRPM(temperature);
    reading.fanName = QStringLiteral("Left Fan");
    reading.maxDisplayRPM = maxDisplayRPM(config.maxRPM);
    return reading;
}

/// Every preset, every shape, and the cases at the edges of the chart.
std::vector<FanCurveReading> readings() {
    std::vector<FanCurveReading> made;
    for (const CurvePreset preset : allCases<CurvePreset>()) {
        made.push_back(reading(applyTo(preset, 1250, 7300), 52.4, 1420));
    }
    for (const CurveShape shape : allCases<CurveShape>()) {
        FanCurveConfig config;
        config.curveShape = shape;
        made.push_back(reading(config, 71.8, 4310));
    }
    FanCurveConfig fixed;
    fixed.isFixedRPM = true;
    fixed.fixedRPM = 3200;
    made.push_back(reading(fixed, 44, 3190));
    FanCurveConfig slow;
    slow.minRPM = 0;
    slow.maxRPM = 1900;
    slow.lowTemp = 32;
    slow.highTemp = 100;
    made.push_back(reading(slow, 21, 0));
    FanCurveConfig fast;
    fast.maxRPM = 14000;
    fast.acousticCeilingEnabled = true;
    fast.acousticCeilingRPM = 9000;
    made.push_back(reading(fast, 118, 13900));
    return made;
}

Scene chartScene() {
    Scene scene;
    scene.name = QStringLiteral("fan-curves");
    scene.make = [](SimulatedServices&) {
        constexpr int width = 804;
        constexpr int height = 252;
        constexpr int gap = 12;
        const auto shown = readings();
        const int rows = static_cast<int>((shown.size() + 1) / 2);
        auto sheet = std::make_unique<Sheet>(QSize(2 * width + 3 * gap, rows * (height + gap) + gap));
        for (int i = 0; i < static_cast<int>(shown.size()); ++i) {
            auto* chart = new FanCurveCanvasView;
            chart->setReading(shown[static_cast<std::size_t>(i)]);
            auto* card = new Card(chart, nullptr);
            card->layout()->setContentsMargins(12, 10, 12, 6);
            sheet->place(card, QRect(gap + i % 2 * (width + gap), gap + i / 2 * (height + gap), width, height));
        }
        return sheet;
    };
    return scene;
}

}  // namespace

std::vector<Scene> settingsScenes() {
    std::vector<Scene> scenes{
        tabScene(QStringLiteral("menubar"), SettingsTab::menubar,
                 [](SimulatedServices& services) {
                     services.settings().showDedicatedKeepAwakeItem.set(true);
                     services.keepAwake().activate(KeepAwakeDuration::minutes15);
                 }),
        tabScene(QStringLiteral("keepawake"), SettingsTab::keepAwake),
        tabScene(QStringLiteral("keepawake-active"), SettingsTab::keepAwake,
                 [](SimulatedServices& services) { services.keepAwake().activate(KeepAwakeDuration::minutes15); }),
        crowdedScene(),
        tabScene(QStringLiteral("dashboard"), SettingsTab::dashboard),
        tabScene(QStringLiteral("appearance"), SettingsTab::appearance),
        tabScene(QStringLiteral("sensors"), SettingsTab::sensors),
    };
    for (Scene& scene : scenes) {
        scene.atFractionalScales = true;
    }
    addSmall(scenes);
    addPower(scenes);
    addCooling(scenes);
    addPalettes(scenes);
    scenes.push_back(chartScene());
    return scenes;
}

}  // namespace kestro::shots
