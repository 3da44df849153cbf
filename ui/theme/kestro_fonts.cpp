#include "ui/theme/kestro_fonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QHash>
#include <QRawFont>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double unhintedScale = 1.5;
constexpr double equalWidths = 0.01;
constexpr int weightOfDarkening = 100;

/// In device pixels: from here on stems are thick enough to stay as they are.
constexpr double undarkenedSize = 28;
constexpr qsizetype cachedFonts = 256;

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

/// A table of outline limits: version 0.5 of it belongs to fonts with CFF outlines.
bool hasCFFOutlines(const QString& family) {
    const QByteArray limits = QRawFont::fromFont(QFont(family)).fontTable("maxp");
    return limits.startsWith(QByteArrayLiteral("\0\0\x50\0"));
}

QString& currentFamily() {
    static QString family = installedChoice();
    return family;
}

bool& currentDarkening() {
    static bool isDarkened = hasCFFOutlines(currentFamily());
    return isDarkened;
}

QHash<QString, double>& figureWidths() {
    static QHash<QString, double> widths;
    return widths;
}

double wholeSize(double size) {
    return std::max(1.0, std::ceil(size));
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
    // The metrics of a single character do not include its tracking.
    return widest - narrowest < equalWidths ? 0 : widest + font.letterSpacing();
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
    currentDarkening() = hasCFFOutlines(currentFamily());
    figureWidths().clear();
}

bool KestroFonts::isDarkened() {
    return currentDarkening();
}

QFont::Weight KestroFonts::shownWeight(QFont::Weight weight, double size, double scale) {
    const bool isLightened = isDarkened() && size * scale < undarkenedSize;
    return static_cast<QFont::Weight>(isLightened ? weight - weightOfDarkening : weight);
}

QFont KestroFonts::font(double size, int weight, double tracking, double scale) {
    QFont font(currentFamily());
    font.setPixelSize(static_cast<int>(wholeSize(size)));
    font.setWeight(static_cast<QFont::Weight>(weight));
    font.setHintingPreference(isFine(scale) ? QFont::PreferNoHinting : QFont::PreferVerticalHinting);
    if (tracking != 0) {
        font.setLetterSpacing(QFont::AbsoluteSpacing, tracking / sizeFactor(size));
    }
    return font;
}

double KestroFonts::sizeFactor(double size) {
    return size / wholeSize(size);
}

bool KestroFonts::isFine(double scale) {
    return scale >= unhintedScale;
}

double KestroFonts::figureWidth(const QFont& font) {
    const QString key = font.key();
    if (const auto found = figureWidths().constFind(key); found != figureWidths().constEnd()) {
        return found.value();
    }
    if (figureWidths().size() >= cachedFonts) {
        figureWidths().clear();
    }
    return figureWidths().insert(key, measureFigures(font)).value();
}

}  // namespace kestro
