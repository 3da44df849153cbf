#pragma once

#include <QImage>
#include <QRectF>
#include <QString>
#include <vector>

#include "app/status_bar/panel_colors.h"
#include "app/status_bar/status_bar.h"

namespace kestro {

/// One row of the values icon, in pixels: a bar that is filled from below, and a figure of `size` whose right edge
/// is `figure`'s. A figure wider than `figure` is narrowed to it.
struct GlanceRow {
    QRectF bar;
    QRectF fill;
    QRectF figure;
    QString text;
    double size = 0;
};

/// The rows, upper first, of an icon of `pixels` × `pixels`. Values are clamped to 0..100. A single value has the
/// whole icon, as one taller row; without any there are two rows with an empty fill and the text "--".
std::vector<GlanceRow> glanceRows(const StatusGlance& glance, int pixels);

/// The values icon, for hosts that show no title. `pixels` is at least 1.
QImage glanceIcon(const StatusGlance& glance, int pixels, PanelScheme scheme);

/// A symbol of the set in the panel's text colour, centred in `pixels` × `pixels`, of which it takes `share`
/// (0..1) in each direction. An unknown name gives a null image.
QImage symbolIcon(const QString& name, int pixels, double share, PanelScheme scheme);

/// The icon on a soft edge in the colour of that scheme's panels: invisible there, and a contour on others.
QImage haloed(const QImage& icon, PanelScheme scheme);

}  // namespace kestro
