#pragma once

#include "shell/status_bar.h"

#include <QColor>

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

}  // namespace kestro
