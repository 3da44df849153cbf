#include "ui/controls/swatch.h"

#include "ui/paint/text_painter.h"

#include <QPainter>

namespace kestro {

namespace {

constexpr double discDiameter = 26;
constexpr double ringDiameter = 36;
constexpr double ringWidth = 1.5;
constexpr double hoverRingOpacity = 0.3;
constexpr double labelTop = 44;

}  // namespace

Swatch::Swatch(const QString& label, const QColor& color, QWidget* parent)
    : Control(parent), label_(label), color_(color) {
    setCheckable(QAccessible::RadioButton);
    setAccessibleName(label);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize Swatch::sizeHint() const {
    return {120, fixedHeight};
}

QRectF Swatch::focusArea() const {
    return {(width() - ringDiameter) / 2, 0, ringDiameter, ringDiameter};
}

double Swatch::focusRadius() const {
    return ringDiameter / 2;
}

void Swatch::paint(QPainter& painter) {
    const QPointF centre = focusArea().center();
    painter.setPen(Qt::NoPen);
    painter.setBrush(color_);
    painter.drawEllipse(centre, discDiameter / 2, discDiameter / 2);
    const double ring = isOn() ? 1 : hoverRingOpacity * hovering();
    if (ring > 0) {
        const double radius = (ringDiameter - ringWidth) / 2;
        painter.setPen(QPen(Ink(KestroTheme::textPrimary).faded(ring).color(), ringWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(centre, radius, radius);
    }
    const TextStyle& style = isOn() ? text_styles::chosenSegment : text_styles::segment;
    drawText(painter, QRectF(0, labelTop, width(), style.lineHeight), label_, style, Qt::AlignHCenter);
}

}  // namespace kestro
