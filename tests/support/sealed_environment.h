#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace kestro {

/// Isolates a program from the caller's session: scales, font resolution, styles, desktop, language, displays,
/// buses and file locations. Create it in main() before the application object. Windows have no screen, no bus
/// can be reached, and every folder of the user is an empty temporary one that is removed with this object.
class SealedEnvironment {
public:
    /// `scale` applies to every window, in the toolkit's format.
    explicit SealedEnvironment(const char* scale = "1") {
        if (!home_.isValid()) {
            qFatal("no folder for the files of the program: %s", qPrintable(home_.errorString()));
        }
        forgetTheSession();
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_SCALE_FACTOR", scale);
        qputenv("LC_ALL", "C.UTF-8");
        for (const char* bus : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"}) {
            qputenv(bus, "unix:path=/nonexistent");
        }
        qputenv("HOME", QFile::encodeName(home_.path()));
        for (const char* folder : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
            const QString path = home_.filePath(QString::fromLatin1(folder));
            QDir().mkdir(path);
            QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            qputenv(folder, QFile::encodeName(path));
        }
    }

private:
    /// Keeps variables that locate the toolkit's parts or help to debug the program.
    static bool isKept(std::string_view name) {
        constexpr std::array<std::string_view, 5> kept{"QT_PLUGIN_PATH", "QT_QPA_PLATFORM_PLUGIN_PATH",
                                                       "QT_LOGGING_RULES", "QT_DEBUG_PLUGINS",
                                                       "QT_FATAL_WARNINGS"};
        return std::ranges::find(kept, name) != kept.end();
    }

    static void forgetTheSession() {
        constexpr std::array<std::string_view, 11> prefixes{
            "QT_",  "FONTCONFIG_",     "FREETYPE_", "XDG_",     "KDE_",           "GNOME_",
            "GTK_", "DESKTOP_SESSION", "DISPLAY",   "WAYLAND_", "SESSION_MANAGER"};
        for (const QString& variable : QProcessEnvironment::systemEnvironment().keys()) {
            const QByteArray name = variable.toLocal8Bit();
            const std::string_view view(name.constData(), static_cast<std::size_t>(name.size()));
            const bool isOfSession = std::ranges::any_of(
                prefixes, [view](std::string_view prefix) { return view.starts_with(prefix); });
            if (isOfSession && !isKept(view)) {
                qunsetenv(name.constData());
            }
        }
    }

    QTemporaryDir home_;
};

}  // namespace kestro
