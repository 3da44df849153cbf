#include "shell/linux/gtk_theme.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QStringList>

#include <algorithm>

namespace kestro {

namespace {

/// A theme can have several folders, gtk-3.N, each for GTK 3.N and later; N is even.
constexpr int lastMinorVersion = 24;

QStringList themeFolders() {
    QStringList folders{QDir::homePath() + QStringLiteral("/.themes")};
    for (const QString& data : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation)) {
        folders += data + QStringLiteral("/themes");
    }
    return folders;
}

bool hasStyle(const QString& theme, const QString& file) {
    const QStringList folders = themeFolders();
    return std::ranges::any_of(folders, [&](const QString& folder) {
        for (int minor = 0; minor <= lastMinorVersion; minor += 2) {
            if (QFileInfo::exists(QStringLiteral("%1/%2/gtk-3.%3/%4").arg(folder, theme).arg(minor).arg(file))) {
                return true;
            }
        }
        return false;
    });
}

}  // namespace

std::optional<bool> isGtkThemeDark(const QString& name, bool prefersDark) {
    // These are parts of GTK; only the first has both variants.
    if (name.isEmpty() || name == QLatin1StringView("Adwaita")) {
        return prefersDark;
    }
    if (name == QLatin1StringView("HighContrastInverse")) {
        return true;
    }
    const bool hasVariant = hasStyle(name, QStringLiteral("gtk-dark.css"));
    if (name.contains(QLatin1Char('/')) || (!hasVariant && !hasStyle(name, QStringLiteral("gtk.css")))) {
        return false;
    }
    if ((prefersDark && hasVariant) || name.contains(QLatin1StringView("dark"), Qt::CaseInsensitive)) {
        return true;
    }
    // The variant of a theme that has one differs from the theme itself.
    return hasVariant ? std::optional(false) : std::nullopt;
}

QString themeOfGtkSettingsFile() {
    const QString own =
        QStandardPaths::locate(QStandardPaths::GenericConfigLocation, QStringLiteral("gtk-3.0/settings.ini"));
    const QSettings file(own.isEmpty() ? QStringLiteral("/etc/gtk-3.0/settings.ini") : own, QSettings::IniFormat);
    return file.value(QStringLiteral("Settings/gtk-theme-name")).toString();
}

}  // namespace kestro
