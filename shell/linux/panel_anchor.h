#pragma once

#include <QPoint>
#include <QRect>

#include <optional>
#include <vector>

namespace kestro {

/// One screen: its geometry and the part that panels leave free, in points, and its device pixels per point.
struct ScreenFrame {
    QRect geometry;
    QRect available;
    double scale = 1;
};

/// The screens of the application as if they had no panels. Costs next to nothing.
std::vector<ScreenFrame> currentScreens();

/// The screens of the application with what panels leave free, which the server may have to be asked for.
std::vector<ScreenFrame> currentScreensAndPanels();

/// Converts a panel's point in device pixels to the application's global coordinates; absent if no screen
/// contains it. The origin is absent too: hosts send it when they do not know the position.
std::optional<QPoint> pointFromPanel(QPoint devicePoint, const std::vector<ScreenFrame>& screens);

/// The position of a click on a panel. A pointer close to a screen edge, where panels are, takes precedence over
/// the position from the panel, since some panels report it relative to one of their windows. Absent without
/// either.
std::optional<QPoint> clickPoint(std::optional<QPoint> fromPanel, std::optional<QPoint> pointer,
                                 const std::vector<ScreenFrame>& screens);

/// The pointer's position in global coordinates; absent where the window system hides it over other
/// applications.
std::optional<QPoint> currentPointer();

/// The pointer while it is over a panel, where a click has just been; absent elsewhere and outside every screen.
std::optional<QPoint> pointOnPanel(std::optional<QPoint> pointer, const std::vector<ScreenFrame>& screens);

/// The anchor for what a click at `point` opens: within a panel's share of the screen, the panel's whole
/// thickness at that position; elsewhere the point itself. Null without a point.
QRect panelAnchor(std::optional<QPoint> point, const std::vector<ScreenFrame>& screens);

}  // namespace kestro
