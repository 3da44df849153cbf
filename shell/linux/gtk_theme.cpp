#include "shell/linux/gtk_theme.h"

#include <QDir>
#include <QFileInfo>
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

bool isGtkThemeDark(const QString& name, bool prefersDark) {
    // These are parts of GTK; only the first has both variants.
    if (name.isEmpty() || name == QLatin1StringView("Adwaita")) {
        return prefersDark;
    }
    if (name == QLatin1StringView("HighContrastInverse")) {
        return true;
    }
    if (name.contains(QLatin1Char('/'))) {
        return false;
    }
    return (prefersDark && hasStyle(name, QStringLiteral("gtk-dark.css"))) ||
           (name.contains(QLatin1StringView("dark"), Qt::CaseInsensitive) &&
            hasStyle(name, QStringLiteral("gtk.css")));
}

}  // namespace kestro
