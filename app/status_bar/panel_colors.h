#pragma once

#include <QColor>
#include <QString>
#include <QStringList>
#include <optional>

#include "app/status_bar/status_bar.h"

namespace kestro {

/// Whether the panel behind the items is dark (bright text) or light (dark text).
enum class PanelScheme { dark, light };

/// The colour of a title's role, and of symbols (`label`), on a panel of that scheme.
QColor panelColor(StatusTitleColor role, PanelScheme scheme);

/// What is known about the panel behind the items.
struct PanelFacts {
    QString hostProcess;              ///< name of the process that hosts the items; empty: unknown
    QStringList desktops;             ///< the entries of XDG_CURRENT_DESKTOP
    std::optional<bool> prefersDark;  ///< the desktop's colour preference; absent: it has none
    std::optional<bool> hostIsDark;   ///< the host's own setting; absent: it has none
    bool isPaletteDark = false;       ///< the application palette has a dark window colour
};

/// The scheme that follows from the facts: panels that are always dark, then the host's own setting, then the
/// desktop's preference, then the palette.
PanelScheme panelScheme(const PanelFacts& facts);

}  // namespace kestro
