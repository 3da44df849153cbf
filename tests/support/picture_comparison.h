#pragma once

#include "tests/support/places.h"

#include <QFile>
#include <QImage>
#include <QString>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace kestro {

/// The visible difference between two pictures. Both are reduced to a fifth first, so that glyph rasterisation
/// and rounding of curves do not count, but a part that moved, vanished or changed its colour does.
struct PictureDifference {
    double mean = 255;  ///< over all pixels and channels, 0..255
    int most = 255;     ///< the maximum over all pixels and channels

    /// Whether the pictures look the same.
    bool isInvisible() const { return mean < 0.1 && most < 12; }
};

inline QImage reducedPicture(const QImage& picture) {
    constexpr int reduction = 5;
    return picture.convertToFormat(QImage::Format_ARGB32)
        .scaled(picture.size() / reduction, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

inline PictureDifference pictureDifference(const QImage& reduced, const QImage& expected) {
    if (reduced.size() != expected.size()) {
        return {};
    }
    const QImage reference = expected.convertToFormat(QImage::Format_ARGB32);
    PictureDifference difference{0, 0};
    for (int y = 0; y < reduced.height(); ++y) {
        for (int x = 0; x < reduced.width(); ++x) {
            const QRgb a = reduced.pixel(x, y);
            const QRgb b = reference.pixel(x, y);
            for (const int gap : {qRed(a) - qRed(b), qGreen(a) - qGreen(b), qBlue(a) - qBlue(b)}) {
                difference.mean += std::abs(gap);
                difference.most = std::max(difference.most, std::abs(gap));
            }
        }
    }
    difference.mean /= 3.0 * reduced.width() * reduced.height();
    return difference;
}

inline QString storedPicturePath(const QString& name) {
    return QString::fromStdString(sourceTree() + "/tests/ui/pictures/") + name + QStringLiteral(".png");
}

/// The largest difference when no picture of that name is stored.
inline PictureDifference differenceFromStoredPicture(const QImage& picture, const QString& name) {
    return pictureDifference(reducedPicture(picture), QImage(storedPicturePath(name)));
}

/// Compares with the stored picture of that name. With KESTRO_KEEP_PICTURES set, stores this one instead.
inline void expectLikeStoredPicture(const QImage& picture, const QString& name) {
    if (qEnvironmentVariableIsSet("KESTRO_KEEP_PICTURES")) {
        ASSERT_TRUE(reducedPicture(picture).save(storedPicturePath(name))) << name.toStdString();
        return;
    }
    const PictureDifference difference = differenceFromStoredPicture(picture, name);
    EXPECT_TRUE(difference.isInvisible())
        << name.toStdString() << ": " << difference.mean << " on average, " << difference.most << " at most";
}

}  // namespace kestro
