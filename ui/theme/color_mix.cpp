#include "ui/theme/color_mix.h"

#include "ui/theme/kestro_theme.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestro {

namespace {

constexpr double lightFill = 0.45;
constexpr double hoveredLight = 0.12;
constexpr double pressedShade = 0.18;
constexpr double step = 0.01;

/// Slightly above the 4.5 that WCAG 2 requires, because painting rounds colours.
constexpr double smallTextContrast = 4.55;

double linear(double component) {
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

}  // namespace

double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const std::pair<double, double> both = std::minmax({luminance(one), luminance(other)});
    return (both.second + 0.05) / (both.first + 0.05);
}

QColor readableOn(const QColor& fill, const QColor& text) {
    QColor readable = text;
    for (double share = 0; share < 1 && contrast(readable, fill) < smallTextContrast; share += step) {
        readable = mixed(text, Qt::white, share);
    }
    return readable;
}

QColor accentFill(const QColor& rest, double hovering, double pressing) {
    double shade = pressedShade;
    while (shade > 0 && contrast(mixed(rest, Qt::black, shade), KestroTheme::ground()) < smallTextContrast) {
        shade -= step;
    }
    const QColor pressed = mixed(rest, Qt::black, std::max(0.0, shade));
    return mixed(mixed(rest, Qt::white, hoveredLight * hovering), pressed, pressing);
}

QColor markOn(const QColor& fill) {
    return luminance(fill) > lightFill ? KestroTheme::ground() : QColor(Qt::white);
}

}  // namespace kestro
