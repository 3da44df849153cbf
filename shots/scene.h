#pragma once

#include "tests/support/simulated_services.h"

#include <QString>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

namespace kestro::shots {

/// One picture: a surface or widget on a simulated machine of its own.
struct Scene {
    /// The file name without scale and extension, such as "popover-lilac".
    QString name;

    /// Prepares machine and preferences before anything is built on them. Empty: as they are.
    std::function<void(SimulatedMac&)> arrange;

    /// Drives the running machine after it has settled and before the widget is built. Empty: as it is.
    std::function<void(SimulatedServices&)> drive;

    /// Builds what is pictured, at its final size.
    std::function<std::unique_ptr<QWidget>(SimulatedServices&)> make;

    /// Works the shown widget, as by keyboard or pointer. Empty: it rests.
    std::function<void(QWidget&)> work;

    /// Besides scales 1 and 2 also at 1.25 and 1.5.
    bool atFractionalScales = false;

    /// Also in the wider font that stands in where none of the preferred ones is installed.
    bool inOtherFonts = false;
};

/// The scenes of each surface; a surface has a file of its own.
std::vector<Scene> controlScenes();
std::vector<Scene> dashboardScenes();
std::vector<Scene> decorationScenes();
std::vector<Scene> popoverScenes();
std::vector<Scene> settingsScenes();
std::vector<Scene> statusScenes();
std::vector<Scene> symbolScenes();
std::vector<Scene> widgetScenes();

}  // namespace kestro::shots
