#include "app/windows/settings_window.h"

#include "app/windows/window_geometry.h"

#include <utility>

namespace kestro {

SettingsWindow::SettingsWindow(WindowDelegate& delegate, WindowSystem& system, ContentFactory makeContent)
    : SurfaceWindow(delegate, system, std::move(makeContent), QStringLiteral("Kestro Preferences")) {
    setFrame(centred(settingsSize, availableArea()));
}

void SettingsWindow::fitToScreen() {
    setFrame({pos(), settingsSize});
}

void SettingsWindow::keepSize(QSize) {
    // Where it is: the user may be dragging it.
    const QRect available = availableArea();
    const QSize size = available.isNull() ? settingsSize : placeOnScreen({pos(), settingsSize}, available).size();
    setFixedSize(size);
    resize(size);
}

void SettingsWindow::setFrame(const QRect& wanted) {
    const QRect available = availableArea();
    const QRect frame = available.isNull() ? wanted : placeOnScreen(wanted, available);
    setFixedSize(frame.size());
    move(frame.topLeft());
}

}  // namespace kestro
