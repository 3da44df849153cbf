#include "ui/paint/surface_paint.h"

#include "ui/paint/hairline.h"
#include "ui/theme/kestro_theme.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace kestro {

void paintRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& fill) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(rect, radius, radius);
}

void paintOutline(QPainter& painter, const QRectF& rect, double radius, const QColor& color, double width) {
    const double inset = width / 2;
    const double lineRadius = std::max(0.0, radius - inset);
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), lineRadius, lineRadius);
}

void paintVerticalHairline(QPainter& painter, double x, double top, double bottom) {
    const double width = hairlineWidth(deviceScale(painter));
    painter.fillRect(snappedToDevice(painter, QRectF(x, top, width, bottom - top)), KestroTheme::hairline());
}

void paintPopupGlass(QPainter& painter, const QRectF& rect, double radius) {
    paintRounded(painter, rect, radius, KestroTheme::ground());
    QLinearGradient light(rect.topLeft(), rect.bottomLeft());
    const auto whiteAt = [](float opacity) { return QColor::fromRgbF(1, 1, 1, opacity); };
    constexpr double lightFalls = 90;
    light.setColorAt(0, whiteAt(0.055F));
    light.setColorAt(std::min(0.99, lightFalls / std::max(1.0, rect.height())), whiteAt(0.018F));
    light.setColorAt(1, whiteAt(0.012F));
    painter.setPen(Qt::NoPen);
    painter.setBrush(light);
    painter.drawRoundedRect(rect, radius, radius);
    kestroHairlineBorder(painter, rect, radius, KestroTheme::hairlineStrong());
}

void paintHudGlass(QPainter& painter, const QRectF& rect, double radius) {
    constexpr double shade = 0.42;
    paintRounded(painter, rect, radius, KestroTheme::ground());
    paintRounded(painter, rect, radius, QColor::fromRgbF(0, 0, 0, static_cast<float>(shade)));
    kestroHairlineBorder(painter, rect, radius, KestroTheme::hairlineStrong());
}

void paintBar(QPainter& painter, const QRectF& area, double fraction, const QColor& trackColor,
              const QColor& fill) {
    const QRectF track = snappedBar(painter, area);
    const double radius = track.height() / 2;
    paintRounded(painter, track, radius, trackColor);
    const double filled = track.width() * std::clamp(fraction, 0.0, 1.0);
    if (filled <= 0) {
        return;
    }
    if (filled < track.height()) {
        // Too short for round ends: clips the fill to the track's shape.
        QPainterPath shape;
        shape.addRoundedRect(track, radius, radius);
        QPainterPath part;
        part.addRect(QRectF(track.left(), track.top(), filled, track.height()));
        painter.fillPath(shape.intersected(part), fill);
        return;
    }
    paintRounded(painter, QRectF(track.left(), track.top(), filled, track.height()), radius, fill);
}

}  // namespace kestro
