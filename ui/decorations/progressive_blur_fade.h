#pragma once

#include <QRectF>

class QPainter;

namespace kestro {

/// Fades the top and bottom edges of everything painted so far: fully visible from 8 points inside, 0.35 at the
/// edge itself. For backdrop and ink only, never for content.
struct ProgressiveBlurFade {
    static constexpr double depth = 8;
    static constexpr double edgeOpacity = 0.35;

    /// Multiplies the opacity of everything on the painter's device inside `rect`.
    static void apply(QPainter& painter, const QRectF& rect);
};

}  // namespace kestro
