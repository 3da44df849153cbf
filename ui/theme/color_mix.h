#pragma once

#include <QColor>

namespace kestro {

/// `color` with `share` (0..1) of `other` mixed in; keeps the opacity of `color`.
inline QColor mixed(const QColor& color, const QColor& other, double share) {
    const auto mix = [share](float a, float b) { return static_cast<float>(a + (b - a) * share); };
    return QColor::fromRgbF(mix(color.redF(), other.redF()), mix(color.greenF(), other.greenF()),
                            mix(color.blueF(), other.blueF()), color.alphaF());
}

/// The opaque colour of `color` painted over `below`.
inline QColor over(const QColor& color, const QColor& below) {
    QColor opaque = color;
    opaque.setAlphaF(1);
    return mixed(below, opaque, color.alphaF());
}

/// The fill `rest`, lightened when hovered (12 % white) and darkened when pressed (18 % black, or less if the
/// ground colour would be hard to read on it); both states are 0..1.
QColor accentFill(const QColor& rest, double hovering, double pressing);

/// Relative luminance of an sRGB colour as WCAG 2 defines it, 0..1.
double luminance(const QColor& color);

/// The contrast ratio of two opaque colours as WCAG 2 defines it, 1..21.
double contrast(const QColor& one, const QColor& other);

/// `text`, lightened only as far as small text on the opaque `fill` needs.
QColor readableOn(const QColor& fill, const QColor& text);

/// The colour of a mark on a fill: white, or the ground colour when the fill is too light for white.
QColor markOn(const QColor& fill);

}  // namespace kestro
