#include "packaging/macos/icon_file.h"

#include "tests/support/places.h"

#include <QImage>
#include <QtEndian>

#include <gtest/gtest.h>

#include <map>

namespace kestro {
namespace {

/// The files in an icon file by type, and whether their lengths add up to the whole.
std::map<QByteArray, QByteArray> membersOf(const QByteArray& file) {
    std::map<QByteArray, QByteArray> members;
    EXPECT_TRUE(file.startsWith("icns"));
    EXPECT_EQ(qFromBigEndian<quint32>(file.mid(4, 4).constData()), static_cast<quint32>(file.size()));
    for (qsizetype at = 8; at + 8 <= file.size();) {
        const auto length = static_cast<qsizetype>(qFromBigEndian<quint32>(file.mid(at + 4, 4).constData()));
        EXPECT_LE(at + length, file.size());
        members[file.mid(at, 4)] = file.mid(at + 8, length - 8);
        at += std::max<qsizetype>(length, 8);
    }
    return members;
}

TEST(IconFile, HasThePictureInEverySize) {
    const auto members = membersOf(iconFile(QString::fromStdString(sourceTree() + "/packaging/icons/kestro.svg")));

    const std::map<QByteArray, int> sides{{"ic11", 32},  {"ic12", 64},  {"ic07", 128}, {"ic13", 256},
                                          {"ic08", 256}, {"ic14", 512}, {"ic09", 512}, {"ic10", 1024}};
    EXPECT_EQ(members.size(), sides.size());
    for (const auto& [type, side] : sides) {
        ASSERT_TRUE(members.contains(type)) << type.constData();
        const QImage picture = QImage::fromData(members.at(type), "PNG");
        EXPECT_EQ(picture.size(), QSize(side, side)) << type.constData();
        EXPECT_EQ(qAlpha(picture.pixel(0, 0)), 0) << type.constData();
        EXPECT_EQ(qAlpha(picture.pixel(side / 2, side / 2)), 255) << type.constData();
    }
}

TEST(IconFile, IsEmptyWithoutAPicture) {
    EXPECT_TRUE(iconFile(QStringLiteral("/nonexistent.svg")).isEmpty());
}

}  // namespace
}  // namespace kestro
