#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

namespace kestro {

/// The rules that place and size the windows. Pure; everything in points and global coordinates whose origin
/// is at the top left. `available` is a screen without its panels, `screen` the whole of it.

inline constexpr QSize popoverSize{330, 325};
inline constexpr QSize dashboardMinimumSize{740, 420};
inline constexpr int dashboardHeight = 480;  ///< at creation, and the least that automatic sizing gives
inline constexpr QSize settingsSize{860, 750};
inline constexpr int titleBandHeight = 50;

/// Where the popover opens: 6 away from its item on the side where the screen has room, right-aligned to it,
/// 8 inside the screen and clear of its panels. Beside an item in a vertical panel. With a null `anchor`, the
/// corner where items usually stand: at the right, by the top panel or, when only the bottom has one, by that.
QRect popoverFrame(const QRect& anchor, QSize size, const QRect& screen, const QRect& available);

/// The frame with a new size and its bottom-left corner where it was. It leaves that corner only when its
/// title band would otherwise leave the available area, beyond which nobody could drag it back.
QRect resizedKeepingBottomLeft(const QRect& frame, QSize size, const QRect& available);

/// The frame that fits the dashboard's content: `optimalWidth` about the frame's centre, the height kept but
/// for `dashboardHeight` at least, the bottom edge where it was.
QRect automaticDashboardFrame(const QRect& frame, int optimalWidth, const QRect& available);

/// What a windowed zoom does: the frame to take, and the frame to come back to, if any.
struct WindowedZoom {
    QRect frame;
    std::optional<QRect> preZoomFrame;

    friend bool operator==(const WindowedZoom&, const WindowedZoom&) = default;
};

/// A window that fills the available area (each of width, height, x and y within 10) goes back to
/// `preZoomFrame`, or to 1100 × 480 in the middle when there is none; any other fills the area.
WindowedZoom windowedZoom(const QRect& frame, const std::optional<QRect>& preZoomFrame, const QRect& available);

/// Whether a position in a window of `content` size lies in the band that a double click zooms from: its top
/// 50 points without the 148 at the right, where the buttons are.
bool isInTitleBand(QPoint position, QSize content);

/// The window edges that a press at `position` takes hold of; none inside the window.
Qt::Edges resizeEdges(QPoint position, QSize content);

/// `size` in the middle of the available area.
QRect centred(QSize size, const QRect& available);

/// 860 × 750, or less on a smaller screen, with 480 as the least height.
QSize settingsWindowSize(const QRect& available);

}  // namespace kestro
