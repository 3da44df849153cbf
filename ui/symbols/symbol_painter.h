#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QString>
#include <QStringList>

class QPainter;

namespace kestro {

/// The weight of a symbol's strokes.
enum class SymbolWeight { regular, bold };

/// Paints the symbols of the built-in set, one-colour drawings identified by name and tinted with the given
/// colour. Rendered symbols are kept in a bounded cache. An unknown name paints nothing. Main thread.
class SymbolPainter {
public:
    SymbolPainter() = delete;

    /// All names of the set, sorted.
    static QStringList names();
    static bool contains(const QString& name);

    /// Paints the symbol into `square`, snapped to whole device pixels.
    static void paint(QPainter& painter, const QString& name, const QRectF& square, const QColor& color,
                      SymbolWeight weight = SymbolWeight::regular);

    /// The symbol as a square image of `pixels` device pixels, at most 512; null for an unknown name or a size of
    /// 0.
    static QImage image(const QString& name, int pixels, const QColor& color,
                        SymbolWeight weight = SymbolWeight::regular);
};

}  // namespace kestro
