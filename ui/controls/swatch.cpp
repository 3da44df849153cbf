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
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Swatch::setChosen(bool isChosen) {
    if (isChosen != isChosen_) {
        isChosen_ = isChosen;
        announceChecked();
        update();
    }
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

AccessibleInfo Swatch::accessibleInfo() const {
    AccessibleInfo info = Control::accessibleInfo();
    info.role = QAccessible::RadioButton;
    info.name = label_;
    info.checked = isChosen_;
    return info;
}

void Swatch::paint(QPainter& painter) {
    const QPointF centre = focusArea().center();
    painter.setPen(Qt::NoPen);
    painter.setBrush(color_);
    painter.drawEllipse(centre, discDiameter / 2, discDiameter / 2);
    const double ring = isChosen_ ? 1 : hoverRingOpacity * hovering();
    if (ring > 0) {
        const double radius = (ringDiameter - ringWidth) / 2;
        painter.setPen(QPen(Ink(KestroTheme::textPrimary).faded(ring).color(), ringWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(centre, radius, radius);
    }
    TextStyle style = text_styles::segment;
    if (isChosen_) {
        style.weight = text_styles::w600;
        style.ink = KestroTheme::textPrimary;
    }
    drawText(painter, QRectF(0, labelTop, width(), style.lineHeight), label_, style, Qt::AlignHCenter);
}

}  // namespace kestro
