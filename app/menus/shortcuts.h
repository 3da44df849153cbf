#pragma once

#include <QString>

namespace kestro::shortcuts {

/// The shortcut of every command that has one, as portable key sequences. Following the toolkit's convention, a
/// Mac's Command is Ctrl here and its Control is Meta. Where the desktop reserves Meta, F11, customary on this
/// desktop, does the same in a window.

inline const QString toggleDashboard = QStringLiteral("Ctrl+D");
inline const QString toggleFullScreen = QStringLiteral("Ctrl+Meta+F");
inline const QString toggleFullScreenInWindow = QStringLiteral("F11");
inline const QString openSettings = QStringLiteral("Ctrl+,");
inline const QString togglePin = QStringLiteral("Ctrl+P");
inline const QString quit = QStringLiteral("Ctrl+Q");
inline const QString closeWindow = QStringLiteral("Ctrl+W");

}  // namespace kestro::shortcuts
