#include "app/status_bar/notifier/icon_pixmaps.h"

#include <QtEndian>
#include <array>

#include "app/status_bar/glance_icon.h"

namespace kestro {

namespace {

constexpr std::array iconSizes{16, 22, 24, 32, 44, 48, 64};

QImage paintedIcon(const NotifierIcon& icon, int pixels, PanelScheme scheme) {
    if (const auto* glance = std::get_if<StatusGlance>(&icon)) {
        return glanceIcon(*glance, pixels, scheme);
    }
    return symbolIcon(std::get<QString>(icon), pixels, scheme);
}

}  // namespace

NotifierPixmap notifierPixmap(const QImage& image) {
    const QImage straight = image.convertToFormat(QImage::Format_ARGB32);
    NotifierPixmap pixmap{straight.width(), straight.height(), {}};
    constexpr qsizetype bytesPerPixel = 4;
    const qsizetype rowBytes = straight.width() * bytesPerPixel;
    pixmap.bytes.resize(rowBytes * straight.height());
    for (int row = 0; row < straight.height(); ++row) {
        qToBigEndian<quint32>(straight.constScanLine(row), straight.width(), pixmap.bytes.data() + row * rowBytes);
    }
    return pixmap;
}

bool IconPixmaps::setIcon(const NotifierIcon& icon, PanelScheme scheme) {
    if (icon == icon_ && scheme == scheme_) {
        return false;
    }
    icon_ = icon;
    scheme_ = scheme;
    painted_.reset();
    return true;
}

const NotifierPixmaps& IconPixmaps::pixmaps() {
    if (!painted_) {
        painted_.emplace();
        if (!std::holds_alternative<std::monostate>(icon_)) {
            for (const int pixels : iconSizes) {
                const QImage image = paintedIcon(icon_, pixels, scheme_);
                if (!image.isNull()) {
                    painted_->append(notifierPixmap(image));
                }
            }
        }
    }
    return *painted_;
}

}  // namespace kestro
