#include "shots/scene.h"
#include "ui/settings/settings_view.h"

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
    Scene fanless = tabScene(QStringLiteral("cooling-fanless"), SettingsTab::cooling);
    fanless.arrange = [](SimulatedMac& mac) { mac.smc.setFans({}); };
    scenes.push_back(std::move(fanless));
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
        tabScene(QStringLiteral("power"), SettingsTab::power),
        tabScene(QStringLiteral("dashboard"), SettingsTab::dashboard),
        tabScene(QStringLiteral("appearance"), SettingsTab::appearance),
        tabScene(QStringLiteral("appearance-lilac"), SettingsTab::appearance,
                 [](SimulatedServices& services) { services.settings().themePalette.set(ThemePalette::lilac); }),
        tabScene(QStringLiteral("sensors"), SettingsTab::sensors),
    };
    addCooling(scenes);
    return scenes;
}

}  // namespace kestro::shots
