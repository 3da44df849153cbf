#pragma once

#include "core/model/appearance_enumerations.h"

class QPainter;
class QRectF;

namespace kestro {

/// Paints a small pane of a glass material over a sample wallpaper. `fades` fades its edges.
void paintGlassSample(QPainter& painter, const QRectF& area, GlassMaterialStyle style, bool fades);

}  // namespace kestro
