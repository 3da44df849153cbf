#include "shell/linux/notifier/icon_pixmaps.h"

#include "shell/linux/notifier/glance_icon.h"

#include <QtEndian>

#include <array>

namespace kestro {

namespace {

constexpr std::array iconSizes{16, 22, 24, 32, 44, 48, 64};

/// A symbol's share of its square beside labels: as tall as the text of panels.
constexpr double amongLabels = 0.75;

QImage paintedIcon(const NotifierIcon& icon, int pixels, PanelScheme scheme) {
    if (const auto* glance = std::get_if<StatusGlance>(&icon)) {
        return glanceIcon(*glance, pixels, scheme);
    }
    const auto& symbol = std::get<NotifierSymbol>(icon);
    return symbolIcon(symbol.name, pixels, symbol.isAmongLabels ? amongLabels : 1, scheme);
}

/// If the panel's scheme is only a guess, the icon gets a halo that keeps it readable on the other scheme.
QImage finishedIcon(const NotifierIcon& icon, int pixels, const PanelLook& look) {
    const QImage image = paintedIcon(icon, pixels, look.scheme);
    return image.isNull() || look.isKnown ? image : haloed(image, look.scheme);
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

bool IconPixmaps::setIcon(const NotifierIcon& icon, const PanelLook& look) {
    if (icon == icon_ && look == look_) {
        return false;
    }
    icon_ = icon;
    look_ = look;
    painted_.reset();
    return true;
}

const NotifierPixmaps& IconPixmaps::pixmaps() {
    if (!painted_) {
        painted_.emplace();
        if (!std::holds_alternative<std::monostate>(icon_)) {
            for (const int pixels : iconSizes) {
                const QImage image = finishedIcon(icon_, pixels, look_);
                if (!image.isNull()) {
                    painted_->append(notifierPixmap(image));
                }
            }
        }
    }
    return *painted_;
}

}  // namespace kestro
