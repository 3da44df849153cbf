#include "ui/paint/color_mix.h"

#include "ui/theme/kestro_theme.h"

#include <cmath>

namespace kestro {

namespace {

constexpr double lightFill = 0.45;

double linear(double component) {
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

}  // namespace

double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor markOn(const QColor& fill) {
    return luminance(fill) > lightFill ? KestroTheme::ground() : QColor(Qt::white);
}

}  // namespace kestro
