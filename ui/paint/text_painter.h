#pragma once

#include "ui/paint/text_shaping.h"
#include "ui/paint/text_style.h"

#include <QRectF>
#include <QString>

class QPainter;

namespace kestro {

/// A text fitted to a box: the remaining text and the factor by which its size shrinks.
struct FittedText {
    QString text;
    double scale = 1;

    friend bool operator==(const FittedText&, const FittedText&) = default;
};

/// The text as one line that is safe to show: control and direction-override characters become spaces, and only
/// the first 512 characters are kept, more than any surface can show.
QString singleLine(const QString& text);

/// Shapes one line of plain text. Figures get cells of equal width, so that a changing number does not move its
/// neighbours. `scale` is the device's, for hinting. Results are cached; the reference stays valid until the next
/// call. Main thread.
const ShapedText& shapeText(const QString& text, const TextStyle& style, double scale = 1);

/// The width of the shaped text.
double textWidth(const QString& text, const TextStyle& style);

/// Shrinks and elides as `fit` requires, for a box of `width`.
FittedText fitText(const QString& text, const TextStyle& style, double width, TextFit fit);

/// The distance from the top of a line box of `lineHeight` to the baseline of text centred in it: whole points, so
/// that text has the same position in its line at every screen scale.
double baselineOffset(double lineHeight, double ascent, double descent);

/// Paints one line into `box`, vertically centred, aligned by the horizontal flag of `alignment`, with the
/// baseline on a whole device pixel.
void drawText(QPainter& painter, const QRectF& box, const QString& text, const TextStyle& style,
              Qt::Alignment alignment = Qt::AlignLeft, TextFit fit = TextFit::label);

}  // namespace kestro
