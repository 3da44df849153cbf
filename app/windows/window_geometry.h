#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

namespace kestro {

/// The rules that place and size the windows. Pure; everything in points and global coordinates with the origin
/// at the top left. `available` is a screen without its panels and our strip, `screen` all of it.

inline constexpr QSize dashboardMinimumSize{740, 420};
inline constexpr int dashboardHeight = 480;  ///< at creation, and the minimum for automatic sizing
inline constexpr QSize settingsSize{860, 750};
inline constexpr int titleBandHeight = 50;

/// Where the popover opens: 6 away from its item on the side with room, right-aligned to it, 8 inside the screen
/// and clear of its panels; beside the item in a vertical panel. With a null `anchor`, the usual corner of
/// items: at the right, by the top panel, or by the bottom panel if only that exists.
QRect popoverFrame(const QRect& anchor, QSize size, const QRect& screen, const QRect& available);

/// The frame that shows the whole window: `frame` itself where the area contains it. Otherwise it moves as little
/// as possible and shrinks to the area less 8 on every side.
QRect placeOnScreen(const QRect& frame, const QRect& available);

/// The frame with a new size and its bottom-left corner in place.
QRect resizedKeepingBottomLeft(const QRect& frame, QSize size);

/// The frame that fits the dashboard's content: `optimalWidth` around the frame's centre, the height kept but at
/// least `dashboardHeight`, the bottom edge in place.
QRect automaticDashboardFrame(const QRect& frame, int optimalWidth);

/// Whether a window fills the area: width, height, x and y each within 10.
bool fills(const QRect& frame, const QRect& available);

/// The result of a windowed zoom: the frame to take, and the frame to restore later, if any.
struct WindowedZoom {
    QRect frame;
    std::optional<QRect> preZoomFrame;

    friend bool operator==(const WindowedZoom&, const WindowedZoom&) = default;
};

/// A window that fills the available area returns to `preZoomFrame`, or to a centred 1100 × 480 if there is none;
/// any other fills the area.
WindowedZoom windowedZoom(const QRect& frame, const std::optional<QRect>& preZoomFrame, const QRect& available);

/// Whether a position in a window of `content` size is in the band where a double click zooms: the top 50 points
/// except the rightmost 148, where the buttons are.
bool isInTitleBand(QPoint position, QSize content);

/// The window edges that a press at `position` grabs: the border of 5, and both edges in the 12 × 12 of a corner;
/// none inside the window.
Qt::Edges resizeEdges(QPoint position, QSize content);

/// `size` in the middle of the available area.
QRect centred(QSize size, const QRect& available);

}  // namespace kestro
