#include "shots/scene.h"
#include "ui/paint/hairline.h"
#include "ui/paint/text_painter.h"
#include "ui/symbols/symbol_painter.h"

#include <QPainter>

namespace kestro::shots {

namespace {

constexpr int columnCount = 6;
constexpr int cellWidth = 164;
constexpr int cellHeight = 92;

/// Every symbol at each size in use.
class SymbolSheet : public QWidget {
public:
    SymbolSheet() {
        const int rows = (static_cast<int>(SymbolPainter::names().size()) + columnCount - 1) / columnCount;
        resize(20 + columnCount * cellWidth, 20 + rows * cellHeight);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), KestroTheme::ground());
        int index = 0;
        for (const QString& name : SymbolPainter::names()) {
            const QPoint topLeft(10 + index % columnCount * cellWidth, 10 + index / columnCount * cellHeight);
            paintCell(painter, QRect(topLeft, QSize(cellWidth - 8, cellHeight - 8)), name);
            ++index;
        }
    }

private:
    static void paintCell(QPainter& painter, const QRect& cell, const QString& name) {
        kestroHairlineBorder(painter, cell);
        double x = cell.left() + 8;
        const double bottom = cell.top() + 58;
        for (const int size : {48, 16, 12, 10, 9, 8, 7}) {
            const QColor color = size == 16 ? KestroTheme::accentCool() : KestroTheme::textPrimary();
            SymbolPainter::paint(painter, name, QRectF(x, bottom - size, size, size), color);
            x += size + 5;
        }
        drawText(painter, QRectF(cell.left() + 8, bottom + 6, cell.width() - 16, 14), name,
                 text_styles::popoverLabel);
    }
};

}  // namespace

std::vector<Scene> symbolScenes() {
    Scene scene;
    scene.name = QStringLiteral("symbols");
    scene.make = [](SimulatedServices&) { return std::make_unique<SymbolSheet>(); };
    return {scene};
}

}  // namespace kestro::shots
