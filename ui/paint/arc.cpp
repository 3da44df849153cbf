#include "ui/paint/arc.h"

#include "ui/paint/hairline.h"

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
        const double fromCentre = std::hypot(dx, dy);
        const double fromLine = std::abs(fromCentre - radius);
        if (fromLine > reach + 1) {
            return 0;
        }
        const double x = dx * axis.x() + dy * axis.y();
        const double y = std::abs(dy * axis.x() - dx * axis.y());
        const bool isBeyondEnd = y * end.x() > x * end.y();
        const double distance = isBeyondEnd ? std::hypot(x - end.x() * radius, y - end.y() * radius) : fromLine;
        return std::clamp(reach - distance + 0.5, 0.0, 1.0);
    }

    QPointF centre;
    double radius;
    double reach;
    QPointF axis;
    QPointF end;
};

QImage arcImage(const Arc& arc, const QRect& pixels, const QColor& color) {
    const SymmetricArc shape(arc);
    QImage image(pixels.size(), QImage::Format_ARGB32_Premultiplied);
    for (int row = 0; row < pixels.height(); ++row) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(row));
        for (int column = 0; column < pixels.width(); ++column) {
            const double covered = shape.coverage(pixels.x() + column + 0.5, pixels.y() + row + 0.5);
            const double alpha = covered * color.alphaF();
            line[column] = covered > 0 ? qPremultiply(qRgba(color.red(), color.green(), color.blue(),
                                                            static_cast<int>(std::lround(255 * alpha))))
                                       : 0;
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
    const QTransform world = painter.worldTransform();
    // What remains of the transformation is none, so the pixels are copied without resampling.
    painter.setWorldTransform(device.inverted() * world);
    painter.drawImage(pixels.topLeft(), arcImage(inPixels, pixels, color));
    painter.setWorldTransform(world);
}

}  // namespace kestro
