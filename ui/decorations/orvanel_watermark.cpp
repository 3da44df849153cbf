#include "ui/decorations/orvanel_watermark.h"

#include "ui/decorations/studio_halftone_field.h"
#include "ui/paint/hairline.h"
#include "ui/paint/zoom.h"
#include "ui/theme/kestro_fonts.h"
#include "ui/theme/kestro_theme.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace kestro {

namespace {

struct Measures {
    double mark;
    double gap;
    double textSize;
    double tracking;
};

constexpr double grid = 12;
constexpr double inkOpacity = 0.75;
constexpr double whiteOpacity = 0.55;
constexpr double wordOpacity = 0.42;

Measures measures(OrvanelWatermark::Variant variant) {
    return variant == OrvanelWatermark::Variant::full ? Measures{11, 6, 8, 2.0} : Measures{9, 4, 7, 1.4};
}

QString word() {
    return QStringLiteral("ORVANEL");
}

QFont wordFont(const Measures& measures, double scale) {
    const QFont::Weight weight = KestroFonts::shownWeight(QFont::Bold, measures.textSize, scale);
    return KestroFonts::font(measures.textSize, weight, measures.tracking, scale);
}

/// The word's width without the tracking after its last letter.
double wordWidth(const Measures& measures, double scale) {
    return QFontMetricsF(wordFont(measures, scale)).horizontalAdvance(word()) - measures.tracking;
}

void paintMark(QPainter& painter, const QPointF& shift, QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(opacity));
    painter.setPen(QPen(color, 1));
    const QPointF centre = QPointF(grid / 2, grid / 2) + shift;
    constexpr double arm = grid / 2 - 0.6;
    painter.drawEllipse(centre, 3.4, 3.4);
    painter.drawLine(centre - QPointF(arm, 0), centre + QPointF(arm, 0));
    painter.drawLine(centre - QPointF(0, arm), centre + QPointF(0, arm));
}

}  // namespace

OrvanelWatermark::OrvanelWatermark(Variant variant, QWidget* parent) : View(parent), variant_(variant) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    resize(sizeHint());
}

QSize OrvanelWatermark::sizeHint() const {
    const QSizeF size = markSize(variant_);
    return {static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height()))};
}

AccessibleInfo OrvanelWatermark::accessibleInfo() const {
    return AccessibleInfo::decoration();
}

QSizeF OrvanelWatermark::markSize(Variant variant) {
    const Measures m = measures(variant);
    return {m.mark + m.gap + wordWidth(m, 1), m.mark};
}

void OrvanelWatermark::paint(QPainter& painter, const QPointF& rightCentre, Variant variant) {
    const Measures m = measures(variant);
    const QFont font = wordFont(m, deviceScale(painter));
    const double wordLeft = rightCentre.x() - wordWidth(m, deviceScale(painter));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.save();
    painter.translate(wordLeft - m.gap - m.mark, rightCentre.y() - m.mark / 2);
    painter.scale(m.mark / grid, m.mark / grid);
    paintMark(painter, {-0.55, -0.2}, halftoneInkColor(HalftoneInk::cyan), inkOpacity);
    paintMark(painter, {0.55, 0.2}, halftoneInkColor(HalftoneInk::magenta), inkOpacity);
    paintMark(painter, {}, halftoneInkColor(HalftoneInk::paper), whiteOpacity);
    painter.restore();
    QColor ink = KestroTheme::textPrimary();
    ink.setAlphaF(wordOpacity);
    painter.setPen(ink);
    painter.setFont(font);
    painter.drawText(QPointF(wordLeft, rightCentre.y() + QFontMetricsF(font).capHeight() / 2), word());
    painter.restore();
}

void OrvanelWatermark::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintInDesignPoints(painter, *this);
    const QRectF area = designRect(*this);
    paint(painter, QPointF(area.right(), area.center().y()), variant_);
}

}  // namespace kestro
