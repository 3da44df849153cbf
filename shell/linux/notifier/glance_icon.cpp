#include "shell/linux/notifier/glance_icon.h"

#include "ui/symbols/symbol_painter.h"
#include "ui/theme/kestro_fonts.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

// The icon is drawn on a grid of 22 units.
constexpr double grid = 22;
constexpr double barLeft = 1;
constexpr double barWidth = 2.5;
constexpr double figureRight = 21.5;
constexpr double figureWidth = 16;
constexpr double figureTracking = -0.3;
constexpr double trackOpacity = 0.28;

/// A row's position and the size of its figure, on the grid.
struct RowPlace {
    double top;
    double height;
    double figureSize;
};

constexpr RowPlace upperRow{1, 9, 10.5};
constexpr RowPlace lowerRow{12, 9, 10.5};
constexpr RowPlace onlyRow{2, 18, 13};

GlanceRow glanceRow(std::optional<int> percent, const RowPlace& place, double unit) {
    const int value = std::clamp(percent.value_or(0), 0, 100);
    const double filled = place.height * value / 100;
    const double top = place.top * unit;
    const double height = place.height * unit;
    return {QRectF(barLeft * unit, top, barWidth * unit, height),
            QRectF(barLeft * unit, top + height - filled * unit, barWidth * unit, filled * unit),
            QRectF((figureRight - figureWidth) * unit, top, figureWidth * unit, height),
            percent ? QString::number(value) : QStringLiteral("--"), place.figureSize * unit};
}

QImage emptyIcon(int pixels) {
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void paintRow(QPainter& painter, const GlanceRow& row, const QColor& color, double unit) {
    QPainterPath bar;
    bar.addRoundedRect(row.bar, row.bar.width() / 2, row.bar.width() / 2);
    QColor track = color;
    track.setAlphaF(static_cast<float>(trackOpacity));
    painter.fillPath(bar, track);
    QPainterPath fill;
    fill.addRect(row.fill);
    painter.fillPath(bar.intersected(fill), color);

    const QFont font = KestroFonts::font(row.size, QFont::Bold, figureTracking * unit);
    const QFontMetricsF metrics(font);
    const double shrink = KestroFonts::sizeFactor(row.size);
    const double width = metrics.horizontalAdvance(row.text) * shrink;
    const double narrow = std::min(1.0, row.figure.width() / std::max(width, 1.0));
    painter.save();
    // Placing the baseline on a whole pixel keeps the bottom edges of small figures sharp.
    painter.translate(row.figure.right() - width * narrow,
                      std::round(row.figure.center().y() + metrics.capHeight() * shrink / 2));
    painter.scale(shrink * narrow, shrink);
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(QPointF(0, 0), row.text);
    painter.restore();
}

}  // namespace

std::vector<GlanceRow> glanceRows(const StatusGlance& glance, int pixels) {
    const double unit = pixels / grid;
    if (glance.upperPercent.has_value() != glance.lowerPercent.has_value()) {
        return {glanceRow(glance.upperPercent ? glance.upperPercent : glance.lowerPercent, onlyRow, unit)};
    }
    return {glanceRow(glance.upperPercent, upperRow, unit), glanceRow(glance.lowerPercent, lowerRow, unit)};
}

QImage glanceIcon(const StatusGlance& glance, int pixels, PanelScheme scheme) {
    QImage image = emptyIcon(pixels);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor color = panelColor(StatusTitleColor::label, scheme);
    for (const GlanceRow& row : glanceRows(glance, pixels)) {
        paintRow(painter, row, color, pixels / grid);
    }
    return image;
}

QImage symbolIcon(const QString& name, int pixels, double share, PanelScheme scheme) {
    // Whole-pixel margins keep the strokes sharp.
    const int margin = static_cast<int>(std::lround(pixels * (1 - share) / 2));
    const QImage symbol =
        SymbolPainter::image(name, pixels - 2 * margin, panelColor(StatusTitleColor::label, scheme));
    if (symbol.isNull()) {
        return {};
    }
    QImage image = emptyIcon(pixels);
    QPainter painter(&image);
    painter.drawImage(margin, margin, symbol);
    return image;
}

QImage haloed(const QImage& icon, PanelScheme scheme) {
    constexpr double haloOpacity = 0.3;
    QImage silhouette = icon.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter tint(&silhouette);
    tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tint.fillRect(silhouette.rect(), scheme == PanelScheme::dark ? Qt::black : Qt::white);
    tint.end();

    QImage image = emptyIcon(icon.width());
    QPainter painter(&image);
    painter.setOpacity(haloOpacity);
    for (const QPoint offset : {QPoint(-1, -1), QPoint(0, -1), QPoint(1, -1), QPoint(-1, 0), QPoint(1, 0),
                                QPoint(-1, 1), QPoint(0, 1), QPoint(1, 1)}) {
        painter.drawImage(offset, silhouette);
    }
    painter.setOpacity(1);
    painter.drawImage(0, 0, icon);
    return image;
}

}  // namespace kestro
