#include "shell/macos/screen_coordinates.h"

namespace kestro::screen_coordinates {

QRect fromNative(const NativeRect& rect, double primaryHeight) {
    return QRectF(rect.x, primaryHeight - rect.y - rect.height, rect.width, rect.height).toRect();
}

NativePoint toNative(QPoint point, double primaryHeight) {
    return {static_cast<double>(point.x()), primaryHeight - point.y()};
}

std::vector<NativeRect> partsOfView(const QRegion& region, double viewHeight) {
    std::vector<NativeRect> parts;
    for (const QRect& rect : region) {
        parts.push_back({static_cast<double>(rect.x()), viewHeight - rect.y() - rect.height(),
                         static_cast<double>(rect.width()), static_cast<double>(rect.height())});
    }
    return parts;
}

}  // namespace kestro::screen_coordinates
