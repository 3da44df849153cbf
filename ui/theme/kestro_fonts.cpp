#include "ui/theme/kestro_fonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QHash>
#include <QRawFont>
#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double kUnhintedScale = 1.5;
constexpr double kEqualWidths = 0.01;
constexpr qsizetype kCachedFonts = 256;

const QStringList& preferredFamilies() {
    static const QStringList families{
        QStringLiteral("Inter"),       QStringLiteral("Inter Variable"), QStringLiteral("Adwaita Sans"),
        QStringLiteral("SF Pro Text"), QStringLiteral("Noto Sans"),      QStringLiteral("Cantarell"),
        QStringLiteral("Ubuntu"),      QStringLiteral("DejaVu Sans"),
    };
    return families;
}

QString installedChoice() {
    const QString choice = KestroFonts::choose(QFontDatabase::families());
    return choice.isEmpty() ? QFontDatabase::systemFont(QFontDatabase::GeneralFont).family() : choice;
}

QString& currentFamily() {
    static QString family = installedChoice();
    return family;
}

QHash<QString, double>& figureWidths() {
    static QHash<QString, double> widths;
    return widths;
}

/// Cached: each change of size loads the outlines anew.
QRawFont resized(const QRawFont& font, double factor) {
    static QHash<QString, QRawFont> cache;
    const QString key = QStringLiteral("%1/%2/%3/%4/%5/%6")
                            .arg(font.familyName(), font.styleName())
                            .arg(font.weight())
                            .arg(font.hintingPreference())
                            .arg(font.pixelSize())
                            .arg(factor);
    if (const auto found = cache.constFind(key); found != cache.constEnd()) {
        return found.value();
    }
    if (cache.size() >= kCachedFonts) {
        cache.clear();
    }
    QRawFont smaller = font;
    smaller.setPixelSize(font.pixelSize() * factor);
    return cache.insert(key, smaller).value();
}

double measureFigures(const QFont& font) {
    const QFontMetricsF metrics(font);
    double narrowest = metrics.horizontalAdvance(QLatin1Char('0'));
    double widest = narrowest;
    for (char figure = '1'; figure <= '9'; ++figure) {
        const double width = metrics.horizontalAdvance(QLatin1Char(figure));
        narrowest = std::min(narrowest, width);
        widest = std::max(widest, width);
    }
    // The metrics of a single character leave its tracking out.
    return widest - narrowest < kEqualWidths ? 0 : widest + font.letterSpacing();
}

}  // namespace

QString KestroFonts::choose(const QStringList& installed) {
    const auto found = std::ranges::find_if(preferredFamilies(),
                                            [&](const QString& family) { return installed.contains(family); });
    return found == preferredFamilies().end() ? QString() : *found;
}

const QString& KestroFonts::family() {
    return currentFamily();
}

void KestroFonts::setFamily(const QString& family) {
    currentFamily() = family.isEmpty() ? installedChoice() : family;
    figureWidths().clear();
}

QFont KestroFonts::font(double size, int weight, double tracking, double scale) {
    QFont font(currentFamily());
    font.setPixelSize(static_cast<int>(std::ceil(size)));
    font.setWeight(static_cast<QFont::Weight>(weight));
    font.setHintingPreference(scale < kUnhintedScale ? QFont::PreferVerticalHinting : QFont::PreferNoHinting);
    if (tracking != 0) {
        font.setLetterSpacing(QFont::AbsoluteSpacing, tracking / sizeFactor(size));
    }
    return font;
}

double KestroFonts::sizeFactor(double size) {
    return size / std::ceil(size);
}

void KestroFonts::resize(QGlyphRun& run, double factor) {
    if (factor == 1) {
        return;
    }
    run.setRawFont(resized(run.rawFont(), factor));
    QList<QPointF> positions = run.positions();
    for (QPointF& position : positions) {
        position *= factor;
    }
    run.setPositions(positions);
}

double KestroFonts::figureWidth(const QFont& font) {
    const QString key = font.key();
    if (const auto found = figureWidths().constFind(key); found != figureWidths().constEnd()) {
        return found.value();
    }
    if (figureWidths().size() >= kCachedFonts) {
        figureWidths().clear();
    }
    return figureWidths().insert(key, measureFigures(font)).value();
}

}  // namespace kestro
