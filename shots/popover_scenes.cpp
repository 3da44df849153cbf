#include "shots/scene.h"
#include "ui/popover/menu_bar_popover_view.h"

#include <array>
#include <string>
#include <vector>

namespace kestro::shots {

namespace {

std::unique_ptr<QWidget> popover(SimulatedServices& services) {
    return std::make_unique<MenuBarPopoverView>(services.services(), PopoverActions{[] {}, [] {}, [] {}});
}

Scene scene(const QString& name) {
    Scene scene;
    scene.name = QStringLiteral("popover-") + name;
    scene.make = popover;
    return scene;
}

Scene settingsScene(const QString& name, std::function<void(UserSettings&)> change) {
    Scene result = scene(name);
    result.drive = [change = std::move(change)](SimulatedServices& services) { change(services.settings()); };
    return result;
}

Scene machineScene(const QString& name, std::function<void(SimulatedMac&)> arrange) {
    Scene result = scene(name);
    result.arrange = std::move(arrange);
    return result;
}

void addAppearance(std::vector<Scene>& scenes) {
    for (const ThemePalette palette : allCases<ThemePalette>()) {
        const std::string label(rawValue(palette));
        const QString word = QString::fromStdString(label.substr(0, label.find(' '))).toLower();
        scenes.push_back(settingsScene(QStringLiteral("palette-") + word,
                                       [palette](UserSettings& settings) { settings.themePalette.set(palette); }));
    }
    constexpr std::array materials{"frosted", "hud", "tint"};
    for (const GlassMaterialStyle material : allCases<GlassMaterialStyle>()) {
        const QString word = QString::fromUtf8(materials[static_cast<std::size_t>(material)]);
        scenes.push_back(settingsScene(QStringLiteral("material-") + word, [material](UserSettings& settings) {
            settings.glassMaterial.set(material);
        }));
    }
    constexpr std::array patterns{"band", "plume", "ambient"};
    for (const HalftonePatternStyle pattern : allCases<HalftonePatternStyle>()) {
        const QString word = QString::fromUtf8(patterns[static_cast<std::size_t>(pattern)]);
        scenes.push_back(settingsScene(QStringLiteral("pattern-") + word, [pattern](UserSettings& settings) {
            settings.halftonePattern.set(pattern);
            settings.halftoneIntensity.set(HalftoneIntensity::standard);
        }));
    }
    scenes.push_back(settingsScene(QStringLiteral("bold-ink"), [](UserSettings& settings) {
        settings.halftonePattern.set(HalftonePatternStyle::plume);
        settings.halftoneIntensity.set(HalftoneIntensity::bold);
    }));
    scenes.push_back(settingsScene(QStringLiteral("no-ink-no-fade"), [](UserSettings& settings) {
        settings.halftoneIntensity.set(HalftoneIntensity::off);
        settings.progressiveBlurFade.set(false);
    }));
}

void addFans(std::vector<Scene>& scenes) {
    const std::array<std::vector<float>, 7> inventories{{{},
                                                         {1830},
                                                         {1420, 1510},
                                                         {1420, 1510, 980},
                                                         {1420, 1510, 980, 2210},
                                                         {1420, 1510, 980, 2210, 640},
                                                         {1420, 1510, 980, 2210, 640, 720}}};
    for (std::size_t count = 0; count < inventories.size(); ++count) {
        Scene fans = machineScene(QStringLiteral("fans-") + QString::number(count),
                                  [speeds = inventories[count]](SimulatedMac& mac) { mac.smc.setFans(speeds); });
        fans.atFractionalScales = count == 2;
        fans.inOtherFonts = count == 0;
        scenes.push_back(std::move(fans));
    }
}

void heat(SimulatedMac& mac, double degrees) {
    for (SimulatedSensor& sensor : mac.hidEventSystem.sensors) {
        if (sensor.temperature) {
            *sensor.temperature += degrees;
        }
    }
}

void addStates(std::vector<Scene>& scenes) {
    scenes.push_back(machineScene(QStringLiteral("hot"), [](SimulatedMac& mac) { heat(mac, 42); }));
    scenes.push_back(machineScene(QStringLiteral("charging"),
                                  [](SimulatedMac& mac) { mac.powerSources.setBattery(57, true); }));
    scenes.push_back(machineScene(QStringLiteral("on-battery"),
                                  [](SimulatedMac& mac) { mac.powerSources.setBattery(9, false); }));
    scenes.push_back(
        machineScene(QStringLiteral("no-battery"), [](SimulatedMac& mac) { mac.powerSources.removeBattery(); }));
    scenes.push_back(machineScene(QStringLiteral("one-cluster"), [](SimulatedMac& mac) {
        mac.systemControl.integers["hw.perflevel0.physicalcpu"] = 12;
        mac.systemControl.integers.erase("hw.perflevel1.physicalcpu");
    }));

    for (const std::size_t fans : {0U, 2U}) {
        scenes.push_back(machineScene(QStringLiteral("unmeasured-fans-%1").arg(fans), [fans](SimulatedMac& mac) {
            mac.hidEventSystem.sensors.clear();
            mac.powerSources.removeBattery();
            mac.smc.setFans(std::vector<float>(fans, 1420.0F));
        }));
    }

    Scene opened = scene(QStringLiteral("just-opened"));
    opened.drive = [](SimulatedServices& services) {
        services.engine().setUIActive(false);
        services.advance(std::chrono::hours(1));
        services.engine().setUIActive(true);
    };
    scenes.push_back(std::move(opened));

    Scene awake = scene(QStringLiteral("awake"));
    awake.drive = [](SimulatedServices& services) {
        services.keepAwake().activate(KeepAwakeDuration::minutes15);
        services.advance(std::chrono::seconds(55));
    };
    awake.atFractionalScales = true;
    awake.inOtherFonts = true;
    scenes.push_back(std::move(awake));

    Scene endless = scene(QStringLiteral("awake-endless"));
    endless.drive = [](SimulatedServices& services) {
        services.keepAwake().activate(KeepAwakeDuration::indefinite);
        services.settings().fanProfile.set(FanProfile::custom);
        services.fanManager().selectProfile(FanProfile::custom);
    };
    scenes.push_back(std::move(endless));

    Scene fahrenheit = settingsScene(QStringLiteral("fahrenheit-rpm"), [](UserSettings& settings) {
        settings.temperatureUnit.set(TemperatureUnit::fahrenheit);
        settings.fanSpeedUnit.set(FanSpeedUnit::rawRPM);
    });
    fahrenheit.arrange = [](SimulatedMac& mac) {
        constexpr std::array<float, 6> speeds{1420, 5510, 980, 2210, 640, 7720};
        mac.smc.setFans(speeds);
    };
    fahrenheit.atFractionalScales = true;
    fahrenheit.inOtherFonts = true;
    scenes.push_back(std::move(fahrenheit));
}

void addKeyboard(std::vector<Scene>& scenes) {
    for (const int steps : {1, 2, 3, 4, 5}) {
        Scene focus = scene(QStringLiteral("focus-") + QString::number(steps));
        focus.work = [steps](QWidget& widget) {
            QWidget* control = &widget;
            for (int i = 0; i < steps; ++i) {
                do {
                    control = control->nextInFocusChain();
                } while (control->focusPolicy() == Qt::NoFocus || !control->isVisible());
            }
            control->setFocus(Qt::TabFocusReason);
        };
        scenes.push_back(std::move(focus));
    }
}

}  // namespace

std::vector<Scene> popoverScenes() {
    std::vector<Scene> scenes;
    addAppearance(scenes);
    addFans(scenes);
    addStates(scenes);
    addKeyboard(scenes);
    return scenes;
}

}  // namespace kestro::shots
