#include "ui/paint/arc.h"

#include "ui/paint/hairline.h"
#include "ui/paint/tall_shapes.h"

#include <QColor>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace kestro {

namespace {

double radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

/// Many times faster than std::hypot, which also handles numbers that no screen has.
double length(double x, double y) {
    return std::sqrt(x * x + y * y);
}

/// An arc turned so that it is symmetric about the axis to the right.
struct SymmetricArc {
    explicit SymmetricArc(const Arc& arc)
        : centre(arc.centre),
          radius(arc.radius),
          reach(arc.width / 2),
          axis(std::cos(radians((arc.from + arc.to) / 2)), std::sin(radians((arc.from + arc.to) / 2))),
          end(std::cos(radians((arc.to - arc.from) / 2)), std::sin(radians((arc.to - arc.from) / 2))) {}

    /// How much of a pixel is covered, from the distance of its centre to the edge.
    double coverage(double pixelX, double pixelY) const {
        const double dx = pixelX - centre.x();
        const double dy = pixelY - centre.y();
        const double fromCentre = length(dx, dy);
        const double fromLine = std::abs(fromCentre - radius);
        if (fromLine > reach + 1) {
            return 0;
        }
        const double x = dx * axis.x() + dy * axis.y();
        const double y = std::abs(dy * axis.x() - dx * axis.y());
        const bool isBeyondEnd = y * end.x() > x * end.y();
        const double distance = isBeyondEnd ? length(x - end.x() * radius, y - end.y() * radius) : fromLine;
        return std::clamp(reach - distance + 0.5, 0.0, 1.0);
    }

    QPointF centre;
    double radius;
    double reach;
    QPointF axis;
    QPointF end;
};

/// Half the width of a circle at a distance from its centre; 0 beyond it.
double halfChord(double radius, double distance) {
    return std::sqrt(std::max(0.0, radius * radius - distance * distance));
}

QImage arcImage(const Arc& arc, const QRect& pixels, const QColor& color) {
    const SymmetricArc shape(arc);
    const double opacity = 255 * color.alphaF();
    const QRgb rgb = color.rgb() & RGB_MASK;
    QImage image(pixels.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(0);
    for (int row = 0; row < pixels.height(); ++row) {
        const double y = pixels.y() + row + 0.5;
        const double fromCentre = y - shape.centre.y();
        const double outer = halfChord(shape.radius + shape.reach + 1, fromCentre);
        const double inner = halfChord(std::max(0.0, shape.radius - shape.reach - 1), fromCentre);
        const double centre = shape.centre.x() - pixels.x();
        const auto columnAt = [&](double distance) {
            return std::clamp(static_cast<int>(std::floor(centre + distance)), 0, pixels.width());
        };
        const int hole = columnAt(-inner) + 1;
        const int afterHole = std::max(hole, columnAt(inner));
        const int end = std::min(columnAt(outer) + 1, pixels.width());
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(row));
        for (int column = columnAt(-outer); column < end; ++column) {
            if (column == hole) {
                column = afterHole;
            }
            const double covered = shape.coverage(pixels.x() + column + 0.5, y);
            if (covered > 0) {
                line[column] = qPremultiply(rgb | static_cast<QRgb>(std::lround(opacity * covered)) << 24);
            }
        }
    }
    return image;
}

}  // namespace

double arcCoverage(const Arc& arc, const QPointF& pixel) {
    return SymmetricArc(arc).coverage(pixel.x(), pixel.y());
}

void paintArc(QPainter& painter, const Arc& arc, const QColor& color) {
    const QTransform device = painter.deviceTransform();
    const double scale = deviceScale(painter);
    Arc inPixels = arc;
    inPixels.centre = device.map(arc.centre);
    inPixels.radius *= scale;
    inPixels.width *= scale;
    const double reach = inPixels.radius + inPixels.width / 2 + 1;
    const QRectF area(inPixels.centre - QPointF(reach, reach), QSizeF(2 * reach, 2 * reach));
    const QRect pixels = area.toAlignedRect();
    drawPixels(painter, pixels.topLeft(), arcImage(inPixels, pixels, color));
}

}  // namespace kestro
