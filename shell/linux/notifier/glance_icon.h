#pragma once

#include "shell/linux/panel_look.h"
#include "shell/status_bar.h"

#include <QImage>
#include <QRectF>
#include <QString>

#include <vector>

namespace kestro {

/// One row of the values icon, in pixels: a bar filled from the bottom, and a figure of `size`, right-aligned in
/// `figure` and narrowed to fit.
struct GlanceRow {
    QRectF bar;
    QRectF fill;
    QRectF figure;
    QString text;
    double size = 0;
};

/// The rows, upper first, of an icon of `pixels` × `pixels`. Values are clamped to 0..100. A single value takes
/// the whole icon as one taller row; without values there are two rows with an empty fill and the text "--".
std::vector<GlanceRow> glanceRows(const StatusGlance& glance, int pixels);

/// The values icon, for hosts that show no title. `pixels` is at least 1.
QImage glanceIcon(const StatusGlance& glance, int pixels, PanelScheme scheme);

/// A symbol of the set in the panel's text colour, centred in `pixels` × `pixels` and taking `share` (0..1) of
/// each dimension. Null for an unknown name.
QImage symbolIcon(const QString& name, int pixels, double share, PanelScheme scheme);

/// The icon with a soft outline in the colour of that scheme's panels: invisible there, a contour on others.
QImage haloed(const QImage& icon, PanelScheme scheme);

}  // namespace kestro
