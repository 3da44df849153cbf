#pragma once

#include <QColor>
#include <QPainterPath>
#include <QRectF>

class QPainter;

namespace kestro {

/// The outline of a flame, scaled so that its bounds fill `rect`; empty for an empty rectangle.
QPainterPath simpleFlamePath(const QRectF& rect);

/// A flame filled with one colour.
struct SimpleFlameIcon {
    QColor color;

    void paint(QPainter& painter, const QRectF& rect) const;
};

}  // namespace kestro
