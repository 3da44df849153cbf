#include "shell/linux/panel_anchor.h"

#include "shell/linux/panel_space.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace kestro {

std::vector<ScreenFrame> currentScreens() {
    std::vector<ScreenFrame> screens;
    for (const QScreen* screen : QGuiApplication::screens()) {
        screens.push_back({screen->geometry(), screen->geometry(), screen->devicePixelRatio()});
    }
    return screens;
}

std::vector<ScreenFrame> currentScreensAndPanels() {
    const PanelSpace panels;
    std::vector<ScreenFrame> screens;
    for (const QScreen* screen : QGuiApplication::screens()) {
        screens.push_back({screen->geometry(), panels.freeArea(*screen), screen->devicePixelRatio()});
    }
    return screens;
}

std::optional<QPoint> pointFromPanel(QPoint devicePoint, const std::vector<ScreenFrame>& screens) {
    if (devicePoint.isNull()) {
        return std::nullopt;
    }
    for (const ScreenFrame& screen : screens) {
        // A screen's origin is the same in both coordinate systems; only lengths are scaled. Computed in double,
        // since a caller may send any two integers.
        const double x = (static_cast<double>(devicePoint.x()) - screen.geometry.x()) / screen.scale;
        const double y = (static_cast<double>(devicePoint.y()) - screen.geometry.y()) / screen.scale;
        if (x >= 0 && y >= 0 && x < screen.geometry.width() && y < screen.geometry.height()) {
            return screen.geometry.topLeft() + QPoint(static_cast<int>(x), static_cast<int>(y));
        }
    }
    return std::nullopt;
}

std::optional<QPoint> clickPoint(std::optional<QPoint> fromPanel, std::optional<QPoint> pointer,
                                 const std::vector<ScreenFrame>& screens) {
    constexpr int thickestPanel = 64;
    if (!fromPanel || !pointer) {
        return fromPanel ? fromPanel : pointer;
    }
    const bool isPointerAtAnEdge = std::ranges::any_of(screens, [&](const ScreenFrame& screen) {
        const QRect inner = screen.geometry.adjusted(thickestPanel, thickestPanel, -thickestPanel, -thickestPanel);
        return screen.geometry.contains(*pointer) && !inner.contains(*pointer);
    });
    return isPointerAtAnEdge ? pointer : fromPanel;
}

std::optional<QPoint> currentPointer() {
    const bool isReported = QGuiApplication::platformName() == QLatin1StringView("xcb");
    return isReported ? std::optional(QCursor::pos()) : std::nullopt;
}

std::optional<QPoint> pointOnPanel(std::optional<QPoint> pointer, const std::vector<ScreenFrame>& screens) {
    const bool isOnPanel = pointer && std::ranges::any_of(screens, [&](const ScreenFrame& screen) {
                               return screen.geometry.contains(*pointer) && !screen.available.contains(*pointer);
                           });
    return isOnPanel ? pointer : std::nullopt;
}

QRect panelAnchor(std::optional<QPoint> point, const std::vector<ScreenFrame>& screens) {
    if (!point) {
        return {};
    }
    const auto screen =
        std::ranges::find_if(screens, [&](const ScreenFrame& frame) { return frame.geometry.contains(*point); });
    if (screen == screens.end()) {
        return {};
    }
    const QRect& whole = screen->geometry;
    const QRect& free = screen->available;
    if (point->y() < free.top()) {
        return {point->x(), whole.top(), 1, free.top() - whole.top()};
    }
    if (point->y() > free.bottom()) {
        return {point->x(), free.bottom() + 1, 1, whole.bottom() - free.bottom()};
    }
    if (point->x() < free.left()) {
        return {whole.left(), point->y(), free.left() - whole.left(), 1};
    }
    if (point->x() > free.right()) {
        return {free.right() + 1, point->y(), whole.right() - free.right(), 1};
    }
    return {*point, QSize(1, 1)};
}

}  // namespace kestro
