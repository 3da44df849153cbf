#pragma once

#include <QColor>

namespace kestro {

/// `color` with `share` (0..1) of `other` mixed in; keeps the opacity of `color`.
inline QColor mixed(const QColor& color, const QColor& other, double share) {
    const auto mix = [share](float a, float b) { return static_cast<float>(a + (b - a) * share); };
    return QColor::fromRgbF(mix(color.redF(), other.redF()), mix(color.greenF(), other.greenF()),
                            mix(color.blueF(), other.blueF()), color.alphaF());
}

/// The fill `rest`, lightened when hovered (12 % white) and darkened when pressed (18 % black); both states are
/// 0..1.
inline QColor accentFill(const QColor& rest, double hovering, double pressing) {
    return mixed(mixed(rest, Qt::white, 0.12 * hovering), mixed(rest, Qt::black, 0.18), pressing);
}

/// Relative luminance of an sRGB colour as WCAG 2 defines it, 0..1.
double luminance(const QColor& color);

/// The colour of a mark on a fill: white, or the ground colour when the fill is too light for white.
QColor markOn(const QColor& fill);

}  // namespace kestro
