#include "ui/controls/badge.h"

#include "ui/paint/surface_paint.h"
#include "ui/paint/text_painter.h"
#include "ui/paint/zoom.h"
#include "ui/theme/color_mix.h"

#include <QPainter>

#include <cmath>

namespace kestro {

namespace {

constexpr double fillOpacity = 0.13;
constexpr double sectionPadding = 5;
constexpr double settingsPadding = 8;
constexpr double dotDiameter = 4;
constexpr double dotGap = 4;
constexpr int loneDotDiameter = 6;

TextStyle styleOf(BadgeKind kind, const Ink& ink) {
    TextStyle style = kind == BadgeKind::settings ? text_styles::settingsBadge : text_styles::sectionBadge;
    const QColor fill = over(ink.faded(fillOpacity).color(), KestroTheme::surface());
    style.ink = readableOn(fill, ink.color());
    return style;
}

}  // namespace

Badge::Badge(BadgeKind kind, const QString& text, const Ink& ink, QWidget* parent)
    : View(parent), kind_(kind), text_(text), ink_(ink) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Badge::setState(const QString& text, const Ink& ink) {
    if (text != text_ || ink != ink_) {
        text_ = text;
        ink_ = ink;
        updateGeometry();
        update();
    }
}

void Badge::setKind(BadgeKind kind) {
    if (kind != kind_) {
        kind_ = kind;
        updateGeometry();
        update();
    }
}

QSize Badge::sizeHint() const {
    if (kind_ == BadgeKind::dot) {
        return {loneDotDiameter, loneDotDiameter};
    }
    const TextStyle style = styleOf(kind_, ink_);
    const double word = std::ceil(textWidth(text_, style));
    const double width = kind_ == BadgeKind::section ? word + dotDiameter + dotGap + 2 * sectionPadding
                                                     : word + 2 * settingsPadding;
    return {static_cast<int>(width), static_cast<int>(style.lineHeight)};
}

AccessibleInfo Badge::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    if (info.name.isEmpty()) {
        info.name = spokenText_.isEmpty() ? text_ : spokenText_;
    }
    return info;
}

void Badge::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintInDesignPoints(painter, *this);
    const QRectF area = designRect(*this);
    if (kind_ == BadgeKind::dot) {
        paintRounded(painter, area, area.height() / 2, ink_.color());
        return;
    }
    paintRounded(painter, area, area.height() / 2, ink_.faded(fillOpacity).color());
    QRectF word = area.adjusted(settingsPadding, 0, -settingsPadding, 0);
    if (kind_ == BadgeKind::section) {
        const QRectF dot(sectionPadding, (area.height() - dotDiameter) / 2, dotDiameter, dotDiameter);
        paintRounded(painter, dot, dotDiameter / 2, ink_.color());
        word = QRectF(dot.right() + dotGap, 0, area.width() - dot.right() - dotGap - sectionPadding + 1,
                      area.height());
    }
    drawText(painter, word, text_, styleOf(kind_, ink_));
}

}  // namespace kestro
