#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

namespace kestro {

/// The one source of fonts: the first installed family of a fixed list, in pixel sizes, hinted for the scale,
/// and the cell in which figures stand so that they are tabular. Main thread, after the application object.
class KestroFonts {
public:
    KestroFonts() = delete;

    /// The first of the preferred families that `installed` holds; empty when it holds none.
    static QString choose(const QStringList& installed);

    /// The family in use; the desktop's default when none of the preferred ones is installed.
    static const QString& family();

    /// Uses `family` instead of the installed choice; empty returns to it. For pictures and tests of other
    /// fonts.
    static void setFamily(const QString& family);

    /// `size` and `tracking` are in pixels at scale 1. A font has whole pixel sizes only: for a fraction the
    /// next whole size is returned with its tracking enlarged alike, and who paints it scales the painter by
    /// `sizeFactor(size)`. Outlines keep their horizontal shape; they are hinted vertically, and on fine screens
    /// not at all.
    static QFont font(double size, int weight = QFont::Medium, double tracking = 0, double scale = 1);

    /// `size` as a fraction of the size of the font that `font` returns for it; 1 for whole sizes.
    static double sizeFactor(double size);

    /// Whether a screen of `scale` device pixels per point has pixels enough to do without hinting.
    static bool isFine(double scale);

    /// The width of the widest figure with its tracking, in which each figure is centred; 0 when all figures
    /// of the font are equally wide and need no cells.
    static double figureWidth(const QFont& font);
};

}  // namespace kestro
