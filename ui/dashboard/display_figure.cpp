#include "ui/dashboard/display_figure.h"

#include "ui/format/unmeasured.h"
#include "ui/paint/text_painter.h"
#include "ui/paint/zoom.h"

#include <QPainter>
#include <QRawFont>

#include <algorithm>

namespace kestro {

namespace {

constexpr double unitGap = 3;

double inkLeft(const ShapedText& text) {
    if (text.runs.isEmpty() || text.runs.first().positions().isEmpty()) {
        return 0;
    }
    const QGlyphRun& first = text.runs.first();
    const QRectF ink = first.rawFont().boundingRect(first.glyphIndexes().first());
    return std::max(0.0, (first.positions().first().x() + ink.left()) * text.scale);
}

}  // namespace

DisplayFigure::DisplayFigure(const QString& name, const QString& unit, QWidget* parent)
    : View(parent), name_(name), unit_(unit) {}

void DisplayFigure::setFigure(const QString& figure) {
    if (figure != figure_) {
        figure_ = figure;
        update();
    }
}

void DisplayFigure::setSize(double size) {
    if (size != size_) {
        size_ = size;
        update();
    }
}

AccessibleInfo DisplayFigure::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    const QString unit = unit_ == QStringLiteral("%") ? QStringLiteral("percent") : unit_;
    info.name = figure_ == pendingFigure() ? QStringLiteral("%1, %2").arg(name_, pendingWords())
                                           : QStringLiteral("%1, %2 %3").arg(name_, figure_, unit);
    return info;
}

QString DisplayFigure::shownUnit() const {
    return figure_ == pendingFigure() ? QString() : unit_;
}

void DisplayFigure::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintInDesignPoints(painter, *this);
    TextStyle figure = text_styles::displayFigure;
    figure.size = size_;
    const QRectF line = designRect(*this);
    const QString unit = shownUnit();
    const double unitWidth = textWidth(unit, text_styles::displayUnit);
    const double room = std::max(0.0, line.width() - unitWidth - unitGap);
    const double scale = fitText(figure_, figure, room, TextFit::value).scale;
    figure.size *= scale;
    figure.tracking *= scale;
    const ShapedText figureShape = shapeText(figure_, figure);
    // A narrow first figure is centred in its cell; what is left of its ink would look like an indent.
    painter.translate(-inkLeft(figureShape), 0);
    drawText(painter, line, figure_, figure, Qt::AlignLeft, TextFit::value);
    // Both boxes are centred in the line; the unit's is lowered to share the baseline.
    const ShapedText unitShape = shapeText(unit, text_styles::displayUnit);
    const double drop = baselineOffset(line.height(), figureShape.ascent, figureShape.descent) -
                        baselineOffset(line.height(), unitShape.ascent, unitShape.descent);
    const double left = figureShape.width + unitGap;
    drawText(painter, QRectF(left, line.top() + drop, line.width() - left, line.height()), unit,
             text_styles::displayUnit, Qt::AlignLeft, TextFit::value);
}

}  // namespace kestro
