#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QString>
#include <QStringList>

class QPainter;

namespace kestro {

/// The strength of a symbol's strokes.
enum class SymbolWeight { regular, bold };

/// Paints the symbols of our own set, each a one-colour drawing found by its name and tinted with the colour
/// asked for. Rendered symbols are kept in a bounded cache. An unknown name paints nothing. Main thread.
class SymbolPainter {
public:
    SymbolPainter() = delete;

    /// Every name of the set, sorted.
    static QStringList names();
    static bool contains(const QString& name);

    /// Paints the symbol into `square`, snapped to whole device pixels.
    static void paint(QPainter& painter, const QString& name, const QRectF& square, const QColor& color,
                      SymbolWeight weight = SymbolWeight::regular);

    /// The symbol as a square image of `pixels` device pixels, at most 512; null for an unknown name or no size.
    static QImage image(const QString& name, int pixels, const QColor& color,
                        SymbolWeight weight = SymbolWeight::regular);
};

}  // namespace kestro
