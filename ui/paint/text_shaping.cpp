#include "ui/paint/text_shaping.h"

#include "ui/theme/kestro_fonts.h"

#include <QFontMetricsF>
#include <QHash>
#include <QTextLayout>

#include <algorithm>

namespace kestro {

namespace {

constexpr qsizetype longestCachedPiece = 8;
constexpr qsizetype cachedPieces = 1024;

bool isFigure(QChar c) {
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

bool readsRightToLeft(const QString& text) {
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c.direction() == QChar::DirR || c.direction() == QChar::DirAL; });
}

/// A figure or the text between two figures, from the origin on its baseline.
struct Piece {
    QList<QGlyphRun> runs;
    double width = 0;
};

QHash<ShapeKey, Piece>& shapedPieces() {
    static QHash<ShapeKey, Piece> pieces;
    return pieces;
}

Piece shapePiece(const QString& text, const QFont& font) {
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    layout.endLayout();
    Piece piece;
    piece.width = line.horizontalAdvance();
    for (QGlyphRun run : layout.glyphRuns()) {
        QList<QPointF> positions = run.positions();
        for (QPointF& position : positions) {
            position -= QPointF(0, line.ascent());
        }
        run.setPositions(positions);
        piece.runs.append(run);
    }
    return piece;
}

Piece pieceOf(const ShapeKey& key, const QFont& font) {
    if (key.text.size() > longestCachedPiece) {
        return shapePiece(key.text, font);
    }
    auto& cache = shapedPieces();
    if (const auto found = cache.constFind(key); found != cache.constEnd()) {
        return found.value();
    }
    if (cache.size() >= cachedPieces) {
        cache.clear();
    }
    return cache.insert(key, shapePiece(key.text, font)).value();
}

/// Appends `piece` to `line`, in a cell of width `cell` unless that is 0.
void append(ShapedText& line, const Piece& piece, double cell) {
    const double offset = line.width + (cell > 0 ? (cell - piece.width) / 2 : 0);
    for (const QGlyphRun& run : piece.runs) {
        const bool continues = !line.runs.isEmpty() && line.runs.last().rawFont() == run.rawFont() &&
                               line.runs.last().flags() == run.flags();
        QGlyphRun merged = continues ? line.runs.takeLast() : run;
        QList<QPointF> positions = continues ? merged.positions() : QList<QPointF>();
        for (const QPointF& position : run.positions()) {
            positions.append(position + QPointF(offset, 0));
        }
        if (continues) {
            merged.setGlyphIndexes(merged.glyphIndexes() + run.glyphIndexes());
        }
        merged.setPositions(positions);
        line.runs.append(merged);
    }
    line.width += cell > 0 ? cell : piece.width;
}

/// Shapes at a whole pixel size, ignoring the line's scale.
ShapedText shapeWhole(const ShapeKey& key, const QFont& font) {
    const QFontMetricsF metrics(font);
    ShapedText line;
    line.ascent = metrics.ascent();
    line.descent = metrics.descent();
    const double cell = KestroFonts::figureWidth(font);
    if (cell <= 0 || readsRightToLeft(key.text)) {
        append(line, shapePiece(key.text, font), 0);
        return line;
    }
    ShapeKey piece = key;
    qsizetype start = 0;
    while (start < key.text.size()) {
        qsizetype end = start + 1;
        if (!isFigure(key.text[start])) {
            while (end < key.text.size() && !isFigure(key.text[end])) {
                ++end;
            }
        }
        piece.text = key.text.mid(start, end - start);
        append(line, pieceOf(piece, font), isFigure(key.text[start]) ? cell : 0);
        start = end;
    }
    return line;
}

}  // namespace

size_t qHash(const ShapeKey& key, size_t seed) {
    return qHashMulti(seed, key.text, key.size, key.tracking, key.weight, key.isFine);
}

ShapeKey shapeKey(const QString& text, const TextStyle& style, double deviceScale) {
    return {text, style.size, style.tracking, style.weight, KestroFonts::isFine(deviceScale)};
}

ShapedText shape(const QString& text, const TextStyle& style, double deviceScale) {
    ShapedText line = shapeWhole(shapeKey(text, style, deviceScale),
                                 KestroFonts::font(style.size, style.weight, style.tracking, deviceScale));
    line.scale = KestroFonts::sizeFactor(style.size);
    line.ascent *= line.scale;
    line.descent *= line.scale;
    // Qt adds tracking after the last letter too, where nothing follows.
    line.width = std::max(0.0, line.width * line.scale - style.tracking);
    return line;
}

void releasePieces() {
    shapedPieces() = {};
}

}  // namespace kestro
