#pragma once

#include <QString>

namespace kestro::shortcuts {

/// The key of every command that has one, as portable key sequences. The command key of a Mac is the control
/// key here and its control key is Meta, as the toolkit has it. Where the desktop keeps Meta for itself, F11,
/// the habit on this desktop, does the same in a window.

inline const QString toggleDashboard = QStringLiteral("Ctrl+D");
inline const QString toggleFullScreen = QStringLiteral("Ctrl+Meta+F");
inline const QString toggleFullScreenInWindow = QStringLiteral("F11");
inline const QString openSettings = QStringLiteral("Ctrl+,");
inline const QString togglePin = QStringLiteral("Ctrl+P");
inline const QString quit = QStringLiteral("Ctrl+Q");
inline const QString closeWindow = QStringLiteral("Ctrl+W");

}  // namespace kestro::shortcuts
