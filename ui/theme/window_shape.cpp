#include "ui/theme/window_shape.h"

#include "ui/theme/window_compositing.h"

#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <cmath>
#include <vector>

namespace kestro {

namespace {

/// The number of pixels cut off a row at each side; `row` counts from the rectangle's edge.
int cornerInset(int row, double radius) {
    const double height = radius - (row + 0.5);
    const double left = radius - std::sqrt(std::max(0.0, radius * radius - height * height));
    return std::max(0, static_cast<int>(std::ceil(left - 0.5)));
}

}  // namespace

QRegion roundedRegion(const QRect& rect, double radius) {
    const double reach = std::clamp(radius, 0.0, std::min(rect.width(), rect.height()) / 2.0);
    const int cornerRows = static_cast<int>(std::ceil(reach));
    std::vector<QRect> bands;  // from the top to the middle; rows of equal width share a band
    for (int row = 0; row < cornerRows; ++row) {
        const int inset = cornerInset(row, reach);
        const QRect band(rect.left() + inset, rect.top() + row, rect.width() - 2 * inset, 1);
        if (!bands.empty() && bands.back().left() == band.left()) {
            bands.back().setBottom(band.bottom());
        } else {
            bands.push_back(band);
        }
    }
    QRegion region(rect.adjusted(0, cornerRows, 0, -cornerRows));
    for (const QRect& band : bands) {
        const int fromEdge = band.top() - rect.top();
        region += band;
        region += QRect(band.left(), rect.bottom() - fromEdge - band.height() + 1, band.width(), band.height());
    }
    return region;
}

QRegion roundedPixels(const QWidget& window, double radius) {
    const double scale = window.devicePixelRatioF();
    return roundedRegion(QRect(QPoint(), (QSizeF(window.size()) * scale).toSize()), radius * scale);
}

void shapeWindow(QWidget& window, double radius, bool blended) {
    QWindow* const handle = window.windowHandle();
    if (handle != nullptr &&
        window_compositing::cutTo(*handle, blended ? QRegion() : roundedPixels(window, radius))) {
        return;
    }
    if (blended) {
        window.clearMask();
    } else {
        window.setMask(roundedRegion(window.rect(), radius));
    }
}

}  // namespace kestro
