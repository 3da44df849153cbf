#include "ui/decorations/halftone_fields.h"

#include <algorithm>

namespace kestro {

namespace {

constexpr std::int64_t popoverDots = 64;
constexpr std::int64_t dashboardDots = 100;
constexpr std::uint32_t tileSeed = 1618;

StudioHalftoneField tileField(HalftoneShape shape, double maxRadius, double focus) {
    return {shape, tileSeed, popoverDots, 0.6, 0.8, maxRadius, focus, focus};
}

}  // namespace

PlacedHalftoneField popoverHalftone(HalftonePatternStyle pattern) {
    switch (pattern) {
        case HalftonePatternStyle::band:
            break;
        case HalftonePatternStyle::plume:
            return {{HalftoneShape::corner, 777, popoverDots, 0.32, 0.7, 8, 1, 1}, QRectF(0, 0, 330, 325)};
        case HalftonePatternStyle::ambient:
            return {{HalftoneShape::aura, 2225, popoverDots, 0.28, 0.7, 7, 0.5, 0.5}, QRectF(0, 0, 330, 325)};
    }
    return {{HalftoneShape::band, 1814, popoverDots, 0.55, 0.8, 5, 0, 0}, QRectF(0, 0, 200, 40)};
}

PlacedHalftoneField dashboardHalftone(QSizeF window) {
    return {{HalftoneShape::band, 1347, dashboardDots, 0.55, 0.8, 6.5, 0, 0},
            QRectF(0, 0, std::min(420.0, window.width() / 2), 58)};
}

PlacedHalftoneField tileHalftone(HalftonePatternStyle pattern, QSizeF tile) {
    switch (pattern) {
        case HalftonePatternStyle::band:
            break;
        case HalftonePatternStyle::plume:
            return {tileField(HalftoneShape::corner, 6, 1),
                    QRectF(tile.width() - 150, tile.height() - 150, 150, 150)};
        case HalftonePatternStyle::ambient:
            return {tileField(HalftoneShape::aura, 5.5, 0.5),
                    QRectF((tile.width() - 130) / 2, (tile.height() - 130) / 2, 130, 130)};
    }
    return {tileField(HalftoneShape::band, 5, 0), QRectF(0, 0, 200, 40)};
}

}  // namespace kestro
