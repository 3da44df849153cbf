#include "ui/paint/hairline.h"

#include "ui/paint/tall_shapes.h"
#include "ui/theme/kestro_theme.h"

#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double thickness = 0.5;
constexpr double miterLimit = 10;

}  // namespace

double deviceScale(const QPainter& painter) {
    return painter.isActive() ? painter.deviceTransform().m22() : 1;
}

QRectF snappedToDevice(const QPainter& painter, const QRectF& rect) {
    const QTransform toDevice = painter.deviceTransform();
    if (toDevice.type() > QTransform::TxScale) {
        return rect;
    }
    const QRectF device = toDevice.mapRect(rect);
    const double left = std::round(device.left());
    const double top = std::round(device.top());
    const double right = std::max(left + 1, std::round(device.right()));
    const double bottom = std::max(top + 1, std::round(device.bottom()));
    return toDevice.inverted().mapRect(QRectF(QPointF(left, top), QPointF(right, bottom)));
}

double snappedLength(double length, double scale) {
    return std::max(1.0, std::round(length * scale)) / scale;
}

QRectF snappedBar(const QPainter& painter, const QRectF& bar) {
    const QTransform toDevice = painter.deviceTransform();
    if (toDevice.type() > QTransform::TxScale) {
        return bar;
    }
    const QRectF device = toDevice.mapRect(bar);
    const double left = std::round(device.left());
    const double right = std::max(left + 1, std::round(device.right()));
    // Not from the mapped edges: their rounding errors differ from place to place.
    const double height = snappedLength(bar.height(), toDevice.m22()) * toDevice.m22();
    return toDevice.inverted().mapRect(QRectF(left, std::round(device.top()), right - left, height));
}

double hairlineWidth(double scale) {
    return snappedLength(thickness, scale);
}

void kestroHairlineBorder(QPainter& painter, const QRectF& rect, double radius) {
    kestroHairlineBorder(painter, rect, radius, KestroTheme::hairline());
}

void kestroHairlineBorder(QPainter& painter, const QRectF& rect, double radius, const QColor& color) {
    const double width = hairlineWidth(deviceScale(painter));
    QPen pen(color, width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    pen.setMiterLimit(miterLimit);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    outlineTallRounded(painter, snappedToDevice(painter, rect), radius, pen);
    painter.restore();
}

void paintHairline(QPainter& painter, double left, double right, double y) {
    const double width = hairlineWidth(deviceScale(painter));
    painter.fillRect(snappedBar(painter, QRectF(left, y, right - left, width)), KestroTheme::hairline());
}

}  // namespace kestro
