#pragma once

#include "shell/panel_look.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace kestro {

/// What is known about the panel behind the items.
struct PanelFacts {
    QString hostProcess;              ///< name of the process that hosts the items; empty: unknown
    QStringList desktops;             ///< the entries of XDG_CURRENT_DESKTOP
    std::optional<bool> prefersDark;  ///< the desktop's colour preference; absent: it has none
    std::optional<bool> hostIsDark;   ///< the host's own setting; absent: it has none
    bool isPaletteDark = false;       ///< the application palette has a dark window colour
};

/// Derives the look from the facts. Panels that are always dark and the host's own setting are certain; the
/// desktop's preference, which is about applications, and then the palette are guesses.
PanelLook panelLook(const PanelFacts& facts);

}  // namespace kestro
