#include "app/application_icon.h"

#include <QGuiApplication>
#include <QImage>

#include <gtest/gtest.h>

namespace kestro {
namespace {

struct ApplicationIconTest : testing::Test {
    ApplicationIconTest() { QGuiApplication::setWindowIcon(QIcon()); }
    ~ApplicationIconTest() override { QGuiApplication::setWindowIcon(QIcon()); }
};

TEST_F(ApplicationIconTest, IsTheIconOfTheApplication) {
    loadApplicationIcon(applicationIconFile());

    EXPECT_FALSE(QGuiApplication::windowIcon().isNull());
}

TEST_F(ApplicationIconTest, KeepsTheCurrentIconWithoutAFile) {
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::red);
    const QIcon before(pixmap);
    QGuiApplication::setWindowIcon(before);

    loadApplicationIcon(QStringLiteral(":/kestro/nothing.svg"));

    EXPECT_EQ(QGuiApplication::windowIcon().cacheKey(), before.cacheKey());
    EXPECT_TRUE(applicationIcon(QStringLiteral(":/kestro/nothing.svg")).isNull());
}

TEST_F(ApplicationIconTest, IsPaintedInEverySizeThatATaskBarRequests) {
    const QIcon icon = applicationIcon(applicationIconFile());

    ASSERT_FALSE(icon.availableSizes().isEmpty());
    for (const QSize& size : icon.availableSizes()) {
        const QImage image = icon.pixmap(size, 1.0).toImage();
        ASSERT_EQ(image.size(), size);
        // A dark tile with rounded corners, and a light needle from its centre.
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
        EXPECT_GT(image.pixelColor(size.width() / 2, size.height() * 3 / 4).alpha(), 250);
        EXPECT_GT(image.pixelColor(size.width() / 2, size.height() * 71 / 128).lightness(), 180);
    }
}

TEST_F(ApplicationIconTest, IsPaintedSharplyOnDenseScreens) {
    const QIcon icon = applicationIcon(applicationIconFile());

    EXPECT_EQ(icon.pixmap(QSize(48, 48), 2.0).size(), QSize(96, 96));
    EXPECT_EQ(icon.pixmap(QSize(200, 100), 1.0).size(), QSize(100, 100));
}

}  // namespace
}  // namespace kestro
