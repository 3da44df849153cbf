#include "ui/controls/option_tile.h"

#include "ui/controls/indicators.h"
#include "ui/paint/hairline.h"
#include "ui/paint/surface_paint.h"
#include "ui/paint/text_painter.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double cornerRadius = 6;
constexpr double markSize = 12;
constexpr double markGap = 6;

}  // namespace

OptionTile::OptionTile(const QString& label, int pictureHeight, Picture picture, QWidget* parent)
    : Control(parent), label_(label), pictureHeight_(pictureHeight), picture_(std::move(picture)) {
    setCheckable(QAccessible::RadioButton);
    setAccessibleName(label);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize OptionTile::sizeHint() const {
    return {180, pictureHeight_ + labelHeight};
}

QRectF OptionTile::focusArea() const {
    return {0, 0, static_cast<double>(width()), static_cast<double>(pictureHeight_)};
}

void OptionTile::paint(QPainter& painter) {
    const QRectF area = focusArea();
    QPainterPath outline;
    outline.addRoundedRect(area, cornerRadius, cornerRadius);
    painter.save();
    painter.setClipPath(outline);
    picture_(painter, area);
    painter.restore();
    if (isOn()) {
        paintOutline(painter, area, cornerRadius, KestroTheme::accentCool(), 1);
    } else {
        const double rest = KestroTheme::hairline().alphaF();
        const double raised = KestroTheme::hairlineStrong().alphaF();
        kestroHairlineBorder(painter, area, cornerRadius, Ink::white(opacity({rest, raised, raised})).color());
    }
    paintLabel(painter);
}

void OptionTile::paintLabel(QPainter& painter) const {
    const TextStyle& style = isOn() ? text_styles::chosenSegment : text_styles::segment;
    const double room = width() - markSize - markGap;
    const double text = std::min(std::ceil(textWidth(label_, style)), room);
    const double left = (width() - markSize - markGap - text) / 2;
    const double top = pictureHeight_;
    const QRectF mark(left, top + (labelHeight - markSize) / 2.0, markSize, markSize);
    paintRadioMark(painter, mark, {isOn() ? 1.0 : 0.0, hovering(), pressing()});
    drawText(painter, QRectF(mark.right() + markGap, top, text, labelHeight), label_, style);
}

}  // namespace kestro
