#include "ui/popover/readout_line.h"

#include "ui/format/unmeasured.h"
#include "ui/popover/popover_geometry.h"
#include "ui/symbols/symbol_painter.h"

#include <QPainter>

#include <algorithm>

namespace kestro {

namespace {

constexpr double symbolColumn = 10;
constexpr double trailingGap = 5;
constexpr double valueGap = 4;
constexpr double smallestShrink = 0.8;

}  // namespace

ReadoutLine::ReadoutLine(const Style& style, QWidget* parent)
    : View(parent), style_(style), symbolInk_(KestroTheme::textSecondary) {}

void ReadoutLine::setSymbol(const QString& name, const Ink& ink) {
    if (name != symbol_ || ink != symbolInk_) {
        symbol_ = name;
        symbolInk_ = ink;
        update(symbolRect().toAlignedRect());
    }
}

void ReadoutLine::setLabel(const QString& label) {
    if (label == label_) {
        return;
    }
    const double leftBefore = trailingLeft();
    label_ = label;
    if (isTrailing_) {
        const double left = std::min(leftBefore, trailingLeft());
        update(QRectF(left, 0, width() - left, height()).toAlignedRect());
    } else {
        update();
    }
}

void ReadoutLine::setValue(const QString& value) {
    if (value == value_) {
        return;
    }
    const QRectF before = valueRect();
    const QRectF labelBefore = labelRect();
    value_ = value;
    const QRectF labelNow = labelRect();
    const bool isLabelTight = labelWidth() > std::min(labelBefore.width(), labelNow.width());
    update(isLabelTight && labelNow != labelBefore ? rect() : before.united(valueRect()).toAlignedRect());
}

void ReadoutLine::setValueInk(const Ink& ink) {
    if (ink != style_.value.ink) {
        style_.value.ink = ink;
        update(valueRect().toAlignedRect());
    }
}

void ReadoutLine::setMeasured(bool isMeasured) {
    if (isMeasured != isMeasured_) {
        isMeasured_ = isMeasured;
        setHelp(isMeasured ? QString() : unmeasuredHelp());
        update();
    }
}

void ReadoutLine::setTrailing(bool isTrailing) {
    isTrailing_ = isTrailing;
    update();
}

AccessibleInfo ReadoutLine::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    const QString label = label_.endsWith(QLatin1Char(':')) ? label_.chopped(1) : label_;
    QStringList parts{spokenPrefix_, label, value_};
    parts.removeAll(QString());
    info.name = parts.join(QStringLiteral(", "));
    return info;
}

double ReadoutLine::labelLeft() const {
    return style_.symbolSize > 0 ? popover_geometry::textIndent : 0;
}

double ReadoutLine::labelWidth() const {
    return std::min(textWidth(label_, style_.label), style_.labelRoom);
}

QRectF ReadoutLine::valueRect() const {
    // Shrinks both texts before eliding the label.
    const double natural = textWidth(value_, style_.value);
    const double labelNeeds = smallestShrink * labelWidth() + valueGap;
    const double room = std::max(smallestShrink * natural, this->width() - labelLeft() - labelNeeds);
    const double width = std::min({natural, room, static_cast<double>(this->width())});
    return {this->width() - width, 0, width, static_cast<double>(height())};
}

double ReadoutLine::trailingLeft() const {
    const double content = textWidth(label_, style_.label) + style_.symbolSize + trailingGap;
    return std::max(0.0, width() - content);
}

QRectF ReadoutLine::labelRect() const {
    if (isTrailing_) {
        const double left = trailingLeft() + style_.symbolSize + trailingGap;
        return {left, 0, width() - left, static_cast<double>(height())};
    }
    const double left = labelLeft();
    const double right = value_.isEmpty() ? width() : valueRect().left() - valueGap;
    return {left, 0, std::clamp(right - left, 0.0, style_.labelRoom), static_cast<double>(height())};
}

QRectF ReadoutLine::symbolRect() const {
    const double size = style_.symbolSize;
    const double left = isTrailing_ ? trailingLeft() : (symbolColumn - size) / 2;
    return {left, (height() - size) / 2, size, size};
}

void ReadoutLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!symbol_.isEmpty()) {
        SymbolPainter::paint(painter, symbol_, symbolRect(), symbolInk_.color());
    }
    TextStyle label = style_.label;
    label.ink = figureInk(label.ink, isMeasured_ || !value_.isEmpty());
    TextStyle value = style_.value;
    value.ink = figureInk(value.ink, isMeasured_);
    drawText(painter, labelRect(), label_, label, Qt::AlignLeft, isTrailing_ ? TextFit::value : TextFit::label);
    drawText(painter, valueRect(), value_, value, Qt::AlignRight, TextFit::value);
}

}  // namespace kestro
