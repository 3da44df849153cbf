#pragma once

#include "tests/desktop/desktop_session.h"

#include <QString>
#include <QStringList>

namespace kestro {

/// The value of XDG_CURRENT_DESKTOP on the panel's own desktop.
QString panelDesktop(DesktopPanel panel);

/// The panel's program and arguments.
QStringList panelCommand(DesktopPanel panel);

/// Writes settings that make the panel show status items at the top right, as on its own desktop, and nothing that
/// changes by itself; `config` is
/// the configuration folder.
void writePanelSettings(DesktopPanel panel, const QString& config);

}  // namespace kestro
