#pragma once

#include <QString>

namespace kestro::shortcuts {

/// The key of every command that has one, as portable key sequences. The command key of a Mac is the control
/// key here. Command + control + F would ask for the Super key, which window managers keep for themselves, so
/// full screen has Shift beside the control key; F11, the habit on this desktop, does the same in a window.

inline const QString toggleDashboard = QStringLiteral("Ctrl+D");
inline const QString toggleFullScreen = QStringLiteral("Ctrl+Shift+F");
inline const QString toggleFullScreenInWindow = QStringLiteral("F11");
inline const QString openSettings = QStringLiteral("Ctrl+,");
inline const QString togglePin = QStringLiteral("Ctrl+P");
inline const QString quit = QStringLiteral("Ctrl+Q");
inline const QString closeWindow = QStringLiteral("Ctrl+W");

}  // namespace kestro::shortcuts
