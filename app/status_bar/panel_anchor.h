#pragma once

#include <QPoint>
#include <QRect>
#include <optional>
#include <vector>

namespace kestro {

/// One screen: where it is and what panels leave of it, in points, and its device pixels per point.
struct ScreenFrame {
    QRect geometry;
    QRect available;
    double scale = 1;
};

/// The screens of the application.
std::vector<ScreenFrame> currentScreens();

/// A panel's point in device pixels as global coordinates of the application; nothing where no screen is. The
/// origin is no point either: hosts that cannot tell send it.
std::optional<QPoint> pointFromPanel(QPoint devicePoint, const std::vector<ScreenFrame>& screens);

/// Where a click on a panel took place. A pointer close to an edge of its screen, where panels are, is believed
/// more than the panel: some report places relative to a window of theirs. Without either there is no place.
std::optional<QPoint> clickPoint(std::optional<QPoint> fromPanel, std::optional<QPoint> pointer,
                                 const std::vector<ScreenFrame>& screens);

/// The pointer's place, where the window system tells it for other applications' windows; global coordinates.
std::optional<QPoint> currentPointer();

/// Where to attach what opens for a click at `point`: within a panel's share of the screen, the panel's whole
/// thickness at that place; elsewhere the point itself. A null rectangle without a point.
QRect panelAnchor(std::optional<QPoint> point, const std::vector<ScreenFrame>& screens);

}  // namespace kestro
