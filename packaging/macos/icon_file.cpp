#include "packaging/macos/icon_file.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QtEndian>

#include <array>

namespace kestro {

namespace {

/// A member of the file: its type, and the side of its picture in pixels. All of these hold a PNG file.
struct Member {
    QByteArrayView type;
    int side;
};

constexpr std::array members{Member{"ic11", 32},  Member{"ic12", 64},  Member{"ic07", 128}, Member{"ic13", 256},
                             Member{"ic08", 256}, Member{"ic14", 512}, Member{"ic09", 512}, Member{"ic10", 1024}};

QByteArray pngOf(QSvgRenderer& picture, int side) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        picture.render(&painter);
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

/// A type, the length of the whole and the content.
QByteArray block(QByteArrayView type, const QByteArray& content) {
    QByteArray length(4, 0);
    qToBigEndian(static_cast<quint32>(type.size() + length.size() + content.size()), length.data());
    return type.toByteArray() + length + content;
}

}  // namespace

QByteArray iconFile(const QString& svgFile) {
    QSvgRenderer picture(svgFile);
    if (!picture.isValid()) {
        return {};
    }
    QByteArray content;
    for (const auto& [type, side] : members) {
        content += block(type, pngOf(picture, side));
    }
    return block("icns", content);
}

}  // namespace kestro
