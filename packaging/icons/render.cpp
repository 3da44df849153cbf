// Renders an SVG file as a square PNG: render SVG PIXELS PNG.

#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>

#include <cstdio>
#include <cstdlib>

int main(int count, char** arguments) {
    const int side = count == 4 ? std::atoi(arguments[2]) : 0;
    QSvgRenderer renderer;
    if (side <= 0 || side > 4096 || !renderer.load(QString::fromLocal8Bit(arguments[1]))) {
        std::fprintf(stderr, "render SVG PIXELS PNG\n");
        return EXIT_FAILURE;
    }
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(0);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter);
    painter.end();
    return image.save(QString::fromLocal8Bit(arguments[3]), "PNG") ? EXIT_SUCCESS : EXIT_FAILURE;
}
