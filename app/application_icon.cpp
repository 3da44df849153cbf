#include "app/application_icon.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <algorithm>
#include <utility>

// The resource is in a static library: without a reference the linker would drop it. Outside any namespace, as
// the macro requires.
static void registerApplicationIcon() {
    Q_INIT_RESOURCE(application_icon);
}

namespace kestro {

namespace {

/// The sizes for task bars and switchers; every window sends all of them to the display.
constexpr int windowIconSizes[] = {16, 24, 32, 48, 64};

/// Qt's own SVG icon engine would have to be loaded as a plug-in at startup.
class SvgIconEngine final : public QIconEngine {
public:
    explicit SvgIconEngine(QString file) : file_(std::move(file)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
        QSvgRenderer(file_).render(painter, rect);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        const int side = std::min(size.width(), size.height());
        QPixmap& painted = painted_[side];
        if (painted.isNull() && side > 0) {
            painted = QPixmap(side, side);
            painted.fill(Qt::transparent);
            QPainter painter(&painted);
            paint(&painter, painted.rect(), mode, state);
        }
        return painted;
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
        QList<QSize> sizes;
        for (const int side : windowIconSizes) {
            sizes.append({side, side});
        }
        return sizes;
    }

    bool isNull() override { return false; }

    QIconEngine* clone() const override { return new SvgIconEngine(*this); }

private:
    QString file_;
    QHash<int, QPixmap> painted_;
};

}  // namespace

QString applicationIconFile() {
    registerApplicationIcon();
    return QStringLiteral(":/kestro/AppIcon.svg");
}

QIcon applicationIcon(const QString& file) {
    return QFile::exists(file) ? QIcon(new SvgIconEngine(file)) : QIcon();
}

void loadApplicationIcon(const QString& file) {
    if (const QIcon icon = applicationIcon(file); !icon.isNull()) {
        QGuiApplication::setWindowIcon(icon);
    }
}

}  // namespace kestro
