#pragma once

#include <QString>
#include <QStringList>

#include "tests/desktop/desktop_session.h"

namespace kestro {

/// What XDG_CURRENT_DESKTOP says where that panel is at home.
QString panelDesktop(DesktopPanel panel);

/// The panel's program and arguments.
QStringList panelCommand(DesktopPanel panel);

/// Writes settings under which the panel shows status items at the top right, as it does on a desktop of its
/// own: `config` is the folder of the configuration.
void writePanelSettings(DesktopPanel panel, const QString& config);

}  // namespace kestro
