#include "app/windows/settings_window.h"

#include "app/windows/window_geometry.h"

#include <QGuiApplication>
#include <QScreen>

#include <utility>

namespace kestro {

SettingsWindow::SettingsWindow(WindowDelegate& delegate, WindowSystem& system, ContentFactory makeContent)
    : SurfaceWindow(delegate, system, std::move(makeContent), QStringLiteral("Kestro Preferences")) {
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QRect available = screen != nullptr ? screen->availableGeometry() : QRect(QPoint(), settingsSize);
    setFixedSize(settingsWindowSize(available));
    setGeometry(centred(size(), available));
}

}  // namespace kestro
