#pragma once

#include "shell/status_bar.h"

#include <QColor>
#include <QString>
#include <QStringList>

#include <optional>

namespace kestro {

/// Whether the panel behind the items is dark (bright text) or light (dark text).
enum class PanelScheme { dark, light };

/// The colour of a title's role, and of symbols (`label`), on a panel of that scheme.
QColor panelColor(StatusTitleColor role, PanelScheme scheme);

/// A panel's scheme, and whether it is known or only a guess.
struct PanelLook {
    PanelScheme scheme = PanelScheme::dark;
    bool isKnown = false;

    friend bool operator==(const PanelLook&, const PanelLook&) = default;
};

/// What is known about the panel behind the items.
struct PanelFacts {
    QString hostProcess;              ///< name of the process that hosts the items; empty: unknown
    QStringList desktops;             ///< the entries of XDG_CURRENT_DESKTOP
    std::optional<bool> prefersDark;  ///< the desktop's colour preference; absent: it has none
    std::optional<bool> hostIsDark;   ///< by the host's settings; absent: unknown
    bool isPaletteDark = false;       ///< the application palette has a dark window colour
};

/// Whether the host is a panel of Xfce, which runs under other desktops and window managers too. It hosts the
/// items in the panel itself or in a process that it wraps around a plugin.
bool isXfcePanel(const QString& hostProcess, const QStringList& desktops);

/// Derives the look from the facts. Panels that are always dark and the host's own setting are certain; the
/// desktop's preference, which is about applications, and then the palette are guesses.
PanelLook panelLook(const PanelFacts& facts);

}  // namespace kestro
