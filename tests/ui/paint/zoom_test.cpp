#include "ui/paint/zoom.h"

#include <QImage>
#include <QPainter>
#include <QWidget>

#include <gtest/gtest.h>

namespace kestro {
namespace {

class Magnifier : public QWidget, public ZoomedView {
public:
    explicit Magnifier(double zoom, QWidget* parent = nullptr) : QWidget(parent), zoom_(zoom) {}
    double zoom() const override { return zoom_; }

private:
    double zoom_;
};

TEST(Zoom, IsOneOutsideOfAnyZoomedView) {
    QWidget parent;
    const QWidget child(&parent);

    EXPECT_EQ(zoomOf(parent), 1);
    EXPECT_EQ(zoomOf(child), 1);
}

TEST(Zoom, MultipliesThoseOfAllAncestors) {
    Magnifier outer(1.5);
    Magnifier inner(2, &outer);
    const QWidget child(&inner);

    EXPECT_EQ(zoomOf(outer), 1.5);
    EXPECT_EQ(zoomOf(inner), 3);
    EXPECT_EQ(zoomOf(child), 3);
}

TEST(Zoom, EndsAtTheWindow) {
    Magnifier owner(2);
    const QWidget window(&owner, Qt::Window);

    EXPECT_EQ(zoomOf(window), 1);
}

TEST(Zoom, GivesTheWidgetsAreaInDesignPoints) {
    Magnifier view(1.25);
    view.resize(125, 50);

    EXPECT_EQ(designRect(view), QRectF(0, 0, 100, 40));
    EXPECT_EQ(touchedPoints(view, QRectF(1, 2, 10, 4)), QRect(1, 2, 13, 6));
}

TEST(Zoom, RoundsAdjacentAreasToAdjacentPoints) {
    for (double left = 0; left < 40; left += 0.7) {
        const QRect first = wholePoints(zoomed(QRectF(left, 0, 10, 10), 1.375));
        const QRect second = wholePoints(zoomed(QRectF(left + 10, 0, 10, 10), 1.375));
        EXPECT_EQ(first.right() + 1, second.left()) << left;
    }
}

TEST(Zoom, EnlargesWhatIsPaintedInDesignPoints) {
    const Magnifier view(2);
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);

    paintInDesignPoints(painter, view);
    painter.fillRect(QRectF(2, 2, 5, 5), Qt::white);
    painter.end();

    EXPECT_EQ(image.pixelColor(4, 4), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(13, 13), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(3, 3), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(14, 14), QColor(Qt::black));
}

}  // namespace
}  // namespace kestro
