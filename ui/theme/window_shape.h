#pragma once

#include <QRect>
#include <QRegion>

class QWidget;

namespace kestro {

/// The pixels of a rounded rectangle whose centre is inside it. The radius is limited to half the rectangle.
QRegion roundedRegion(const QRect& rect, double radius);

/// The pixels of a window with rounded corners, in device pixels; the radius is in points.
QRegion roundedPixels(const QWidget& window, double radius);

/// Cuts off the corners of a window unless the window system blends it (`blended`). A blended window keeps its
/// rectangle and just leaves its corners unpainted.
void shapeWindow(QWidget& window, double radius, bool blended);

}  // namespace kestro
