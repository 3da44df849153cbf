#include "shell/macos/screen_coordinates.h"

namespace kestro::screen_coordinates {

QRect fromNative(const NativeRect& rect, double primaryHeight) {
    return QRectF(rect.x, primaryHeight - rect.y - rect.height, rect.width, rect.height).toRect();
}

NativePoint toNative(QPoint point, double primaryHeight) {
    return {static_cast<double>(point.x()), primaryHeight - point.y()};
}

std::vector<NativeRect> partsOfView(const QRegion& region, double viewHeight, double scale) {
    std::vector<NativeRect> parts;
    for (const QRect& rect : region) {
        const double height = rect.height() / scale;
        parts.push_back({rect.x() / scale, viewHeight - rect.y() / scale - height, rect.width() / scale, height});
    }
    return parts;
}

}  // namespace kestro::screen_coordinates
