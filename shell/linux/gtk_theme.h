#pragma once

#include <QString>

namespace kestro {

/// Whether GTK 3 paints dark windows with the theme of this name; empty: its default theme. `prefersDark`: the
/// program asks for the theme's dark variant, which few themes have. GTK replaces a theme that is not installed by
/// its light default. Looks into the folders of themes.
bool isGtkThemeDark(const QString& name, bool prefersDark);

}  // namespace kestro
