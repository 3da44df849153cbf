#pragma once

#include "tests/support/simulated_services.h"

#include <QString>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

namespace kestro::shots {

/// One picture: a surface or widget on its own simulated machine.
struct Scene {
    /// The file name without scale and extension, such as "popover-lilac".
    QString name;

    /// Prepares the machine and the preferences before anything is built. Empty: leaves the defaults.
    std::function<void(SimulatedMac&)> arrange;

    /// Drives the running machine once it has settled, before the widget is built. Empty: leaves it idle.
    std::function<void(SimulatedServices&)> drive;

    /// Builds the widget to capture, at its final size.
    std::function<std::unique_ptr<QWidget>(SimulatedServices&)> make;

    /// Interacts with the shown widget by keyboard or pointer. Empty: leaves it alone.
    std::function<void(QWidget&)> work;

    /// Captures at scales 1.25 and 1.5 as well as 1 and 2.
    bool atFractionalScales = false;

    /// Captures also in the wider fallback font, used where no preferred font is installed.
    bool inOtherFonts = false;
};

/// The scenes of each surface; each surface has its own file.
/// Scenes of other files, in high contrast.
std::vector<Scene> contrastScenes();
std::vector<Scene> controlScenes();
std::vector<Scene> dashboardScenes();
std::vector<Scene> decorationScenes();
std::vector<Scene> popoverScenes();
std::vector<Scene> settingsScenes();
std::vector<Scene> statusScenes();
std::vector<Scene> symbolScenes();
std::vector<Scene> widgetScenes();

}  // namespace kestro::shots
