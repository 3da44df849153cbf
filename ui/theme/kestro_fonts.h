#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

namespace kestro {

/// The single source of fonts: the first installed family of a fixed list, in pixel sizes, hinted for the scale,
/// and the cell width that makes figures tabular. Main thread, after the application object.
class KestroFonts {
public:
    KestroFonts() = delete;

    /// The first preferred family in `installed`; empty if there is none.
    static QString choose(const QStringList& installed);

    /// The family in use; the desktop's default if no preferred family is installed.
    static const QString& family();

    /// Overrides the family, for pictures and tests; empty restores the installed choice.
    static void setFamily(const QString& family);

    /// Whether the family in use has CFF outlines, whose thin stems the rasteriser darkens.
    static bool isDarkened();

    /// The weight that looks like `weight` on a screen of `scale` device pixels per point: 100 lower for small
    /// text in a darkened font.
    static QFont::Weight shownWeight(QFont::Weight weight, double size, double scale);

    /// `size` and `tracking` are in pixels at scale 1. Fonts have whole pixel sizes only: a fractional size
    /// returns the next whole size with its tracking enlarged in proportion, and the caller scales the painter by
    /// `sizeFactor(size)`. Outlines are hinted only vertically, and not at all on fine screens.
    static QFont font(double size, int weight = QFont::Medium, double tracking = 0, double scale = 1);

    /// `size` relative to the pixel size of the font that `font` returns for it; 1 for whole sizes.
    static double sizeFactor(double size);

    /// Whether a screen of `scale` device pixels per point is fine enough to do without hinting.
    static bool isFine(double scale);

    /// The width of the widest figure with its tracking, in which each figure is centred; 0 if all figures of the
    /// font have equal widths and need no cells.
    static double figureWidth(const QFont& font);
};

}  // namespace kestro
