#pragma once

#include "ui/decorations/studio_halftone_field.h"

#include <QRectF>
#include <QSizeF>

namespace kestro {

/// A field and its area on its surface.
struct PlacedHalftoneField {
    StudioHalftoneField field;
    QRectF area;

    friend bool operator==(const PlacedHalftoneField&, const PlacedHalftoneField&) = default;
};

/// The ink of the popover in the pattern chosen in the settings. The seeds were chosen so that hardly any larger
/// dot touches a text.
PlacedHalftoneField popoverHalftone(HalftonePatternStyle pattern);

/// The ink of the dashboard: always a band in its top left corner, regardless of the pattern.
PlacedHalftoneField dashboardHalftone(QSizeF window);

/// The preview of a pattern on a tile of the settings.
PlacedHalftoneField tileHalftone(HalftonePatternStyle pattern, QSizeF tile);

}  // namespace kestro
