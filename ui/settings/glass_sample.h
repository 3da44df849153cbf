#pragma once

#include "core/settings/appearance_enumerations.h"

class QPainter;
class QRectF;

namespace kestro {

/// Paints a small piece of a surface in a glass material over a sample wallpaper. Edges fade if `fades`.
void paintGlassSample(QPainter& painter, const QRectF& area, GlassMaterialStyle style, bool fades);

}  // namespace kestro
