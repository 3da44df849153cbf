#pragma once

#include "core/model/appearance_enumerations.h"

#include <QColor>
#include <QRectF>
#include <QSizeF>

#include <cstdint>
#include <functional>

class QPainter;

namespace kestro {

/// How the dots of a field are distributed.
enum class HalftoneShape { band, aura, corner, rule };

/// The four inks of the print.
enum class HalftoneInk { cyan, magenta, yellow, paper };

QColor halftoneInkColor(HalftoneInk ink);

/// One dot, in points relative to the field's top left corner; it may be outside the field.
struct HalftoneDot {
    double x = 0;
    double y = 0;
    double radius = 0;
    HalftoneInk ink = HalftoneInk::cyan;
    double opacity = 0;

    friend bool operator==(const HalftoneDot&, const HalftoneDot&) = default;
};

/// A field of translucent dots in the style of a four-colour print. The same values and size always produce the
/// same dots.
struct StudioHalftoneField {
    HalftoneShape shape = HalftoneShape::band;
    std::uint32_t seed = 0;
    std::int64_t count = 0;  ///< maximum number of dots
    double alpha = 0;        ///< opacity before the intensity setting is applied
    double minRadius = 0;    ///< points
    double maxRadius = 0;    ///< points
    double focusX = 0;       ///< fraction of the width
    double focusY = 0;       ///< fraction of the height

    /// The number of dots on a canvas of `size`: one per 2600 square points, at least 24, at most `count`.
    std::int64_t dotCount(QSizeF size) const;

    /// Calls `visit` for each dot in drawing order; for none when the intensity is off or the size is empty.
    void forEachDot(QSizeF size, HalftoneIntensity intensity,
                    const std::function<void(const HalftoneDot&)>& visit) const;

    /// Paints the dots relative to the top left corner of `area`, unclipped.
    void paint(QPainter& painter, const QRectF& area, HalftoneIntensity intensity) const;

    friend bool operator==(const StudioHalftoneField&, const StudioHalftoneField&) = default;
};

/// Hashes a state of the dot generator to a fraction, at least 0 and below 1.
double halftoneFraction(std::uint32_t state);

/// The opacity factor of the intensity setting: its opacity divided by that of `standard`.
double halftoneFactor(HalftoneIntensity intensity);

}  // namespace kestro
