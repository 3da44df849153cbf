#include "ui/symbols/symbol_painter.h"

#include "ui/paint/hairline.h"
#include "ui/symbols/symbol_cache.h"

#include <QCache>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>

// The set is in a static library: without a reference the linker would drop it. Outside any namespace, as the
// macro requires.
static void registerSymbols() {
    Q_INIT_RESOURCE(symbols);
}

namespace kestro {

namespace {

constexpr int largestPixels = 512;
constexpr int largestSmall = 10;
constexpr int largestSpare = 2;
constexpr double grid = 24;
constexpr double gridStroke = 2;
constexpr double boldStroke = 2.5;
constexpr double heaviestStroke = 3;
constexpr qsizetype cachedBytes = 524'288;

struct SymbolKey {
    QString name;
    int pixels;
    QRgb color;
    SymbolWeight weight;

    friend bool operator==(const SymbolKey&, const SymbolKey&) = default;
};

size_t qHash(const SymbolKey& key, size_t seed = 0) {
    return qHashMulti(seed, key.name, key.pixels, key.color, static_cast<int>(key.weight));
}

QString directory() {
    static const bool isRegistered = [] {
        registerSymbols();
        return true;
    }();
    Q_UNUSED(isRegistered);
    return QStringLiteral(":/kestro/symbols/");
}

QString fileOf(const QString& name) {
    return directory() + name + QStringLiteral(".svg");
}

/// A stroke thinner than a device pixel would blur to grey, so small symbols get thicker strokes.
double strokeWidth(int pixels, SymbolWeight weight) {
    const double stroke = weight == SymbolWeight::bold ? boldStroke : gridStroke;
    return std::clamp(grid / pixels, stroke, heaviestStroke);
}

/// The drawing for small sizes, simplified on a grid of few pixels; empty: this size or symbol has none.
QByteArray smallDrawing(const SymbolKey& key) {
    QFile file(directory() + QStringLiteral("small/") + key.name + QStringLiteral(".svg"));
    return key.pixels <= largestSmall && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The area of a drawing of `edge` pixels: at its own size if that nearly fits, because scaling would
/// blur it.
QRectF smallArea(int edge, int pixels) {
    const int spare = pixels - edge;
    const int offset = spare / 2;
    return spare >= 0 && spare <= largestSpare ? QRectF(offset, offset, edge, edge) : QRectF(0, 0, pixels, pixels);
}

QImage render(const SymbolKey& key, const QColor& color) {
    QFile file(fileOf(key.name));
    if (!SymbolPainter::contains(key.name) || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray small = smallDrawing(key);
    QByteArray source = small.isEmpty() ? file.readAll() : small;
    // The drawing only serves as a mask: any opaque colour will do.
    source.replace("currentColor", "#000000");
    source.replace("stroke-width=\"2\"",
                   "stroke-width=\"" + QByteArray::number(strokeWidth(key.pixels, key.weight)) + "\"");
    QSvgRenderer drawing(source);
    QImage image(key.pixels, key.pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter,
                   small.isEmpty() ? QRectF(image.rect()) : smallArea(drawing.defaultSize().width(), key.pixels));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    return image;
}

QCache<SymbolKey, QImage>& renderedSymbols() {
    static QCache<SymbolKey, QImage> symbols(cachedBytes);
    return symbols;
}

}  // namespace

QStringList SymbolPainter::names() {
    QStringList names;
    for (const QString& file : QDir(directory()).entryList(QDir::Files, QDir::Name)) {
        names.append(file.chopped(4));
    }
    return names;
}

bool SymbolPainter::contains(const QString& name) {
    return !name.contains(QLatin1Char('/')) && QFile::exists(fileOf(name));
}

void releaseSymbolCache() {
    renderedSymbols().clear();
}

QImage SymbolPainter::image(const QString& name, int pixels, const QColor& color, SymbolWeight weight) {
    if (pixels <= 0) {
        return {};
    }
    auto& cache = renderedSymbols();
    const SymbolKey key{name, std::min(pixels, largestPixels), color.rgba(), weight};
    if (const QImage* const cached = cache.object(key)) {
        return *cached;
    }
    const QImage image = render(key, color);
    if (!image.isNull()) {
        cache.insert(key, new QImage(image), image.sizeInBytes());
    }
    return image;
}

void SymbolPainter::paint(QPainter& painter, const QString& name, const QRectF& square, const QColor& color,
                          SymbolWeight weight) {
    if (square.isEmpty()) {
        return;
    }
    const double scale = deviceScale(painter);
    const int pixels = std::max(1, static_cast<int>(std::lround(square.width() * scale)));
    QImage symbol = image(name, pixels, color, weight);
    if (symbol.isNull()) {
        return;
    }
    const QPointF topLeft = snappedToDevice(painter, square).topLeft();
    painter.drawImage(QRectF(topLeft, QSizeF(pixels, pixels) / scale), symbol);
}

}  // namespace kestro
