#include "ui/controls/text_label.h"

#include "ui/paint/zoom.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kestro {

TextLabel::TextLabel(const QString& text, QWidget* parent) : View(parent), text_(text) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void TextLabel::setText(const QString& text) {
    if (text == text_) {
        return;
    }
    const QSize before = sizeHint();
    text_ = text;
    if (sizeHint() != before) {
        updateGeometry();
    }
    update();
}

void TextLabel::setStyle(const TextStyle& style) {
    if (style == style_) {
        return;
    }
    style_ = style;
    updateGeometry();
    update();
}

void TextLabel::setInk(const Ink& ink) {
    if (ink == style_.ink) {
        return;
    }
    style_.ink = ink;
    update();
}

void TextLabel::setTextAlignment(Qt::Alignment alignment) {
    if (alignment != alignment_) {
        alignment_ = alignment;
        update();
    }
}

void TextLabel::setFit(TextFit fit) {
    fit_ = fit;
    const bool isValue = fit == TextFit::value;
    setSizePolicy(isValue ? QSizePolicy::Fixed : QSizePolicy::Preferred, QSizePolicy::Fixed);
    update();
}

void TextLabel::reserveWidth(const QString& widest) {
    reserved_ = widest;
    updateGeometry();
}

QSize TextLabel::sizeHint() const {
    const double width =
        std::max(textWidth(text_, style_), reserved_.isEmpty() ? 0 : textWidth(reserved_, style_));
    return {static_cast<int>(std::ceil(width)), static_cast<int>(std::ceil(style_.lineHeight))};
}

QSize TextLabel::minimumSizeHint() const {
    return {fit_ == TextFit::value ? sizeHint().width() : 0, sizeHint().height()};
}

AccessibleInfo TextLabel::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    if (info.name.isEmpty()) {
        info.name = spokenText_.isEmpty() ? text_ : spokenText_;
    }
    info.isDecoration = isDecoration_ || info.name.isEmpty();
    return info;
}

void TextLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!isEnabled()) {
        painter.setOpacity(0.38);
    }
    paintInDesignPoints(painter, *this);
    drawText(painter, textArea(), text_, style_, alignment_, fit_);
}

QRectF TextLabel::textArea() const {
    QRectF area = designRect(*this);
    const double zoom = zoomOf(*this);
    if (zoom != 1) {
        // Rounding to whole points may have taken up to one of them.
        area.adjust(alignment_ & Qt::AlignRight ? -1 / zoom : 0, 0, alignment_ & Qt::AlignRight ? 0 : 1 / zoom, 0);
    }
    return area;
}

}  // namespace kestro
