#pragma once

#include <QRectF>

class QPainter;

namespace kestro {

/// Fades the top and the bottom edge of what has been painted so far: fully visible from 8 points inside, 0.35
/// at the edge itself. Meant for backdrop and ink, never for content.
struct ProgressiveBlurFade {
    static constexpr double depth = 8;
    static constexpr double edgeOpacity = 0.35;

    /// Multiplies the opacity of everything on the painter's device inside `rect`.
    static void apply(QPainter& painter, const QRectF& rect);
};

}  // namespace kestro
