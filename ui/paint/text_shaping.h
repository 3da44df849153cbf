#pragma once

#include "ui/paint/text_style.h"

#include <QGlyphRun>
#include <QList>
#include <QString>

#include <cstddef>

namespace kestro {

/// One line of shaped text with its baseline starting at (0, 0). The runs must be painted scaled by `scale`; the
/// lengths are those of the scaled line.
struct ShapedText {
    QList<QGlyphRun> runs;
    double scale = 1;
    double width = 0;
    double ascent = 0;
    double descent = 0;
};

/// What the shape of a text depends on, beside the family.
struct ShapeKey {
    QString text;
    double size;
    double tracking;
    int weight;
    bool isFine;

    friend bool operator==(const ShapeKey&, const ShapeKey&) = default;
};

size_t qHash(const ShapeKey& key, size_t seed = 0);

ShapeKey shapeKey(const QString& text, const TextStyle& style, double deviceScale);

/// Shapes a single line. Its parts are kept: the ten figures and a few units, of which there are many
/// combinations. Main thread.
ShapedText shape(const QString& text, const TextStyle& style, double deviceScale);

/// Discards the cached parts. Call it after the family has changed.
void releasePieces();

}  // namespace kestro
