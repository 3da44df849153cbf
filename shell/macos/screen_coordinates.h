#pragma once

#include "shell/macos/native_geometry.h"

#include <QPoint>
#include <QRect>
#include <QRegion>

#include <vector>

/// Between the toolkit's global coordinates, from the top left corner of the primary screen downwards, and
/// AppKit's. Pure.
namespace kestro::screen_coordinates {

/// `primaryHeight` is the height of the primary screen in points.
QRect fromNative(const NativeRect& rect, double primaryHeight);
NativePoint toNative(QPoint point, double primaryHeight);

/// The rectangles of a region in device pixels, in points from the bottom left corner of a view of this height;
/// `scale` is in pixels per point.
std::vector<NativeRect> partsOfView(const QRegion& region, double viewHeight, double scale);

}  // namespace kestro::screen_coordinates
