#pragma once

#include <QString>

#include <optional>

namespace kestro {

/// Whether GTK 3 paints dark windows with the theme of this name; empty: its default theme. `prefersDark`: the
/// program asks for the theme's dark variant, which few themes have. GTK replaces a theme that is not installed by
/// its light default. Absent: the theme is installed, but neither its name nor a dark variant tells. Looks into
/// the folders of themes.
std::optional<bool> isGtkThemeDark(const QString& name, bool prefersDark);

/// The theme that GTK's settings file names, which applies where no settings daemon runs; empty: none.
QString themeOfGtkSettingsFile();

}  // namespace kestro
