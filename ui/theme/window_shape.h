#pragma once

#include <QRect>
#include <QRegion>

class QWidget;

namespace kestro {

/// The pixels of a rounded rectangle whose centre lies in it. At most half the rectangle is rounded.
QRegion roundedRegion(const QRect& rect, double radius);

/// Cuts the corners off a window that its window system does not blend with what lies behind it. Where it is
/// `blended` the window keeps its rectangle, and its corners are simply not painted.
void shapeWindow(QWidget& window, double radius, bool blended);

}  // namespace kestro
