#include "shots/scene.h"
#include "ui/decorations/halftone_fields.h"
#include "ui/decorations/orvanel_watermark.h"
#include "ui/decorations/simple_flame_icon.h"
#include "ui/paint/hairline.h"
#include "ui/theme/kestro_theme.h"

#include <QPainter>

#include <array>

namespace kestro::shots {

namespace {

/// A sheet in the palette's ground colour with a custom painting on it.
class Sheet : public QWidget {
public:
    Sheet(QSize size, std::function<void(QPainter&)> content) : content_(std::move(content)) { resize(size); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), KestroTheme::ground());
        content_(painter);
    }

private:
    std::function<void(QPainter&)> content_;
};

void paintFields(QPainter& painter) {
    constexpr std::array shapes{HalftoneShape::band, HalftoneShape::aura, HalftoneShape::corner,
                                HalftoneShape::rule};
    for (std::size_t row = 0; row < shapes.size(); ++row) {
        for (const HalftoneIntensity intensity : allCases<HalftoneIntensity>()) {
            const QRectF area(10 + static_cast<int>(intensity) * 220, 10 + static_cast<double>(row) * 130, 210,
                              120);
            const double focus = shapes[row] == HalftoneShape::corner ? 1 : 0.5;
            const StudioHalftoneField field{shapes[row], 2024, 100, 0.5, 0.8, 6, focus, focus};
            painter.save();
            painter.setClipRect(area);
            field.paint(painter, area, intensity);
            painter.restore();
            kestroHairlineBorder(painter, area);
        }
    }
}

void paintTiles(QPainter& painter) {
    for (const HalftonePatternStyle pattern : allCases<HalftonePatternStyle>()) {
        const QRectF tile(10 + static_cast<int>(pattern) * 250, 10, 240, 86);
        const PlacedHalftoneField placed = tileHalftone(pattern, tile.size());
        painter.save();
        painter.setClipRect(tile);
        placed.field.paint(painter, placed.area.translated(tile.topLeft()), HalftoneIntensity::standard);
        painter.restore();
        kestroHairlineBorder(painter, tile);
    }
}

void paintMarks(QPainter& painter) {
    OrvanelWatermark::paint(painter, QPointF(140, 20), OrvanelWatermark::Variant::full);
    OrvanelWatermark::paint(painter, QPointF(140, 44), OrvanelWatermark::Variant::compact);
    painter.save();
    painter.scale(4, 4);
    OrvanelWatermark::paint(painter, QPointF(126, 10), OrvanelWatermark::Variant::full);
    painter.restore();
    double x = 10;
    for (const double size : {8.0, 12.0, 24.0, 48.0, 96.0}) {
        SimpleFlameIcon{KestroTheme::accentWarning()}.paint(painter, QRectF(x, 100, size * 0.75, size));
        x += size * 0.75 + 14;
    }
}

Scene sheet(const QString& name, QSize size, void (*paint)(QPainter&)) {
    Scene scene;
    scene.name = name;
    scene.make = [size, paint](SimulatedServices&) { return std::make_unique<Sheet>(size, paint); };
    return scene;
}

}  // namespace

std::vector<Scene> decorationScenes() {
    return {sheet(QStringLiteral("decoration-fields"), {890, 530}, paintFields),
            sheet(QStringLiteral("decoration-tiles"), {760, 106}, paintTiles),
            sheet(QStringLiteral("decoration-marks"), {540, 210}, paintMarks)};
}

}  // namespace kestro::shots
