#include "ui/dashboard/display_figure.h"

#include "ui/paint/text_painter.h"
#include "ui/paint/zoom.h"

#include <QPainter>

#include <algorithm>

namespace kestro {

namespace {

constexpr double unitGap = 3;

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
    info.name = QStringLiteral("%1, %2 %3").arg(name_, figure_, unit);
    return info;
}

void DisplayFigure::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintInDesignPoints(painter, *this);
    TextStyle figure = text_styles::displayFigure;
    figure.size = size_;
    const QRectF line = designRect(*this);
    const double unitWidth = textWidth(unit_, text_styles::displayUnit);
    const double room = std::max(0.0, line.width() - unitWidth - unitGap);
    const double scale = fitText(figure_, figure, room, TextFit::value).scale;
    figure.size *= scale;
    figure.tracking *= scale;
    drawText(painter, line, figure_, figure, Qt::AlignLeft, TextFit::value);
    // Both boxes are centred in the line; the unit's is lowered to share the baseline.
    const ShapedText figureShape = shapeText(figure_, figure);
    const ShapedText unitShape = shapeText(unit_, text_styles::displayUnit);
    const double drop = baselineOffset(line.height(), figureShape.ascent, figureShape.descent) -
                        baselineOffset(line.height(), unitShape.ascent, unitShape.descent);
    const double left = figureShape.width + unitGap;
    drawText(painter, QRectF(left, line.top() + drop, line.width() - left, line.height()), unit_,
             text_styles::displayUnit, Qt::AlignLeft, TextFit::value);
}

}  // namespace kestro
