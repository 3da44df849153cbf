#include "ui/paint/text_painter.h"

#include "ui/paint/hairline.h"
#include "ui/paint/text_caches.h"
#include "ui/paint/text_shaping.h"
#include "ui/theme/kestro_fonts.h"

#include <QHash>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double smallestShrink = 0.8;
constexpr double smallestSize = 7;

/// An error in the sum of a row's widths that is too small to see.
constexpr double hair = 0.01;
constexpr qsizetype longestText = 512;
constexpr qsizetype cachedTexts = 1024;

struct FitKey {
    ShapeKey shape;
    double width;
    TextFit fit;

    friend bool operator==(const FitKey&, const FitKey&) = default;
};

size_t qHash(const FitKey& key, size_t seed = 0) {
    return qHashMulti(seed, qHash(key.shape), key.width, static_cast<int>(key.fit));
}

QString displayed(const QString& text, const TextStyle& style) {
    const QString kept = text.left(longestText);
    return style.capitals ? kept.toUpper() : kept;
}

/// The longest prefix of `text` that fits with an ellipsis.
QString elided(const QString& text, const TextStyle& style, double width) {
    const QString ellipsis(QChar(0x2026));
    qsizetype fits = 0;
    qsizetype tooLong = text.size();
    while (tooLong - fits > 1) {
        const qsizetype middle = (fits + tooLong) / 2;
        const bool isFit = shape(text.left(middle) + ellipsis, style, 1).width <= width;
        (isFit ? fits : tooLong) = middle;
    }
    if (fits > 0 && text[fits - 1].isHighSurrogate()) {
        --fits;
    }
    return text.left(fits).trimmed() + ellipsis;
}

FittedText fitAfresh(const QString& text, const TextStyle& style, double natural, double width, TextFit fit) {
    const double readable = std::min(1.0, smallestSize / style.size);
    const double wanted = std::max(0.0, width) / natural;
    if (fit == TextFit::value) {
        return {text, std::max(readable, wanted)};
    }
    const double scale = std::max({smallestShrink, readable, wanted});
    if (natural * scale <= width + hair) {
        return {text, scale};
    }
    TextStyle smaller = style;
    smaller.size *= scale;
    smaller.tracking *= scale;
    return {elided(displayed(singleLine(text), style), smaller, width), scale};
}

QHash<ShapeKey, ShapedText>& shapedTexts() {
    static QHash<ShapeKey, ShapedText> texts;
    return texts;
}

QHash<FitKey, FittedText>& fittedTexts() {
    static QHash<FitKey, FittedText> texts;
    return texts;
}

}  // namespace

QString singleLine(const QString& text) {
    QString line = text.left(longestText);
    for (QChar& c : line) {
        const bool isHidden = c.category() == QChar::Other_Control || c.category() == QChar::Other_Format ||
                              c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
        const bool joinsGlyphs = c == QChar(0x200C) || c == QChar(0x200D);
        if (isHidden && !joinsGlyphs) {
            c = QLatin1Char(' ');
        }
    }
    return line;
}

namespace {

/// Shapes in the weight of `style` itself.
const ShapedText& shapeAsDesigned(const QString& text, const TextStyle& style, double scale) {
    auto& cache = shapedTexts();
    static QString family;
    if (family != KestroFonts::family()) {
        family = KestroFonts::family();
        cache.clear();
        releasePieces();
    }
    const QString line = displayed(text, style);
    const ShapeKey key = shapeKey(line, style, scale);
    if (const auto found = cache.constFind(key); found != cache.constEnd()) {
        return found.value();
    }
    if (cache.size() >= cachedTexts) {
        cache.clear();
    }
    return cache.insert(key, shape(singleLine(line), style, scale)).value();
}

}  // namespace

void releaseTextCaches() {
    releasePieces();
    shapedTexts() = {};
    fittedTexts() = {};
}

const ShapedText& shapeText(const QString& text, const TextStyle& style, double scale) {
    TextStyle shown = style;
    shown.weight = KestroFonts::shownWeight(style.weight, style.size, scale);
    return shapeAsDesigned(text, shown, scale);
}

double textWidth(const QString& text, const TextStyle& style) {
    // The designed weight is the widest, so that text fits at every scale.
    return shapeAsDesigned(text, style, 1).width;
}

FittedText fitText(const QString& text, const TextStyle& style, double width, TextFit fit) {
    const double natural = textWidth(text, style);
    if (natural <= width || text.isEmpty()) {
        return {text, 1};
    }
    auto& cache = fittedTexts();
    static QString family;
    if (family != KestroFonts::family()) {
        family = KestroFonts::family();
        cache.clear();
    }
    const FitKey key{shapeKey(displayed(text, style), style, 1), width, fit};
    if (const auto found = cache.constFind(key); found != cache.constEnd()) {
        return found.value();
    }
    if (cache.size() >= cachedTexts) {
        cache.clear();
    }
    return cache.insert(key, fitAfresh(text, style, natural, width, fit)).value();
}

double baselineOffset(double lineHeight, double ascent, double descent) {
    const double above = std::round(ascent);
    return std::floor((lineHeight - above - std::round(descent)) / 2) + above;
}

void drawText(QPainter& painter, const QRectF& box, const QString& text, const TextStyle& style,
              Qt::Alignment alignment, TextFit fit) {
    if (text.isEmpty() || box.width() <= 0) {
        return;
    }
    const FittedText fitted = fitText(text, style, box.width(), fit);
    TextStyle scaled = style;
    scaled.size *= fitted.scale;
    scaled.tracking *= fitted.scale;
    const double scale = deviceScale(painter);
    const ShapedText& shaped = shapeText(fitted.text, scaled, scale);

    double x = box.left();
    if (alignment & Qt::AlignRight) {
        x = box.right() - shaped.width;
    } else if (alignment & Qt::AlignHCenter) {
        x = box.center().x() - shaped.width / 2;
    }
    const double above = painter.deviceTransform().dy() / scale;
    const double baseline = box.top() + baselineOffset(box.height(), shaped.ascent, shaped.descent) + above;
    const QPointF origin(x, std::round(baseline * scale) / scale - above);
    painter.setPen(style.ink.color());
    if (shaped.scale == 1) {
        for (const QGlyphRun& run : shaped.runs) {
            painter.drawGlyphRun(origin, run);
        }
        return;
    }
    painter.save();
    painter.translate(origin);
    painter.scale(shaped.scale, shaped.scale);
    for (const QGlyphRun& run : shaped.runs) {
        painter.drawGlyphRun(QPointF(), run);
    }
    painter.restore();
}

}  // namespace kestro
