#include "shots/scene.h"
#include "ui/theme/kestro_theme.h"

#include <QStringList>

namespace kestro::shots {

namespace {

/// The scenes in which every part of a surface occurs.
const QStringList shown{QStringLiteral("popover-hot"),
                        QStringLiteral("popover-awake"),
                        QStringLiteral("dashboard-1260x480"),
                        QStringLiteral("dashboard-hot"),
                        QStringLiteral("settings-menubar"),
                        QStringLiteral("settings-keepawake-active"),
                        QStringLiteral("settings-cooling-linked"),
                        QStringLiteral("settings-power"),
                        QStringLiteral("settings-dashboard"),
                        QStringLiteral("settings-appearance"),
                        QStringLiteral("settings-sensors")};

}  // namespace

std::vector<Scene> contrastScenes() {
    std::vector<Scene> scenes;
    for (const auto& surface : {popoverScenes(), dashboardScenes(), settingsScenes()}) {
        for (Scene scene : surface) {
            if (shown.contains(scene.name)) {
                scene.name.prepend(QStringLiteral("contrast-"));
                scene.drive = [drive = std::move(scene.drive)](SimulatedServices& services) {
                    KestroTheme::setHighContrast(true);
                    if (drive) {
                        drive(services);
                    }
                };
                scene.atFractionalScales = false;
                scene.inOtherFonts = false;
                scenes.push_back(std::move(scene));
            }
        }
    }
    return scenes;
}

}  // namespace kestro::shots
