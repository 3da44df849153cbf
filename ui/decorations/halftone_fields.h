#pragma once

#include <QRectF>
#include <QSizeF>

#include "ui/decorations/studio_halftone_field.h"

namespace kestro {

/// A field and where it lies on its surface.
struct PlacedHalftoneField {
    StudioHalftoneField field;
    QRectF area;

    friend bool operator==(const PlacedHalftoneField&, const PlacedHalftoneField&) = default;
};

/// The ink of the popover in the pattern of the settings. Its seeds were searched so that hardly any larger
/// dot touches a text.
PlacedHalftoneField popoverHalftone(HalftonePatternStyle pattern);

/// The ink of the dashboard, a band in its top left corner whatever the pattern.
PlacedHalftoneField dashboardHalftone(QSizeF window);

/// The sample of a pattern on a tile of the settings.
PlacedHalftoneField tileHalftone(HalftonePatternStyle pattern, QSizeF tile);

}  // namespace kestro
