#include "shots/scene.h"
#include "tests/support/sealed_environment.h"
#include "ui/theme/kestro_fonts.h"
#include "ui/theme/kestro_theme.h"
#include "ui/theme/motion.h"
#include "ui/theme/window_compositing.h"

#include <QApplication>
#include <QDir>
#include <QLinearGradient>
#include <QPainter>
#include <QProcess>
#include <QStyleFactory>

#include <cstdio>

namespace kestro::shots {
namespace {

/// Qt fixes the scale per process and shaped text is cached, so each run is a separate process.
struct Run {
    const char* scale;
    const char* family;  ///< empty: the font that the program chooses by itself
};

constexpr Run runs[] = {{"1", ""}, {"1.25", ""}, {"1.5", ""}, {"2", ""}, {"1", "DejaVu Sans"}};

bool belongsTo(const Scene& scene, const QString& scale, const QString& family) {
    const bool isFractional = scale.contains(QLatin1Char('.'));
    return (!isFractional || scene.atFractionalScales) && (family.isEmpty() || scene.inOtherFonts);
}

std::vector<Scene> allScenes() {
    std::vector<Scene> scenes;
    for (const auto& part : {popoverScenes(), settingsScenes(), dashboardScenes(), controlScenes(), widgetScenes(),
                             decorationScenes(), statusScenes(), symbolScenes(), contrastScenes()}) {
        scenes.insert(scenes.end(), part.begin(), part.end());
    }
    return scenes;
}

/// A wallpaper behind the translucent surfaces: dark in the middle, coloured towards the corners.
QImage wallpaper(const QSize& points, double scale) {
    QImage image((QSizeF(points) * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    QLinearGradient colors(QPointF(), QPointF(points.width(), points.height()));
    colors.setColorAt(0, QColor(58, 92, 150));
    colors.setColorAt(0.5, QColor(36, 30, 48));
    colors.setColorAt(1, QColor(30, 118, 112));
    QPainter painter(&image);
    painter.fillRect(QRect(QPoint(), points), colors);
    return image;
}

QImage picture(const Scene& scene) {
    SimulatedServices services([&](SimulatedMac& mac) {
        if (scene.arrange) {
            scene.arrange(mac);
        }
    });
    KestroTheme::bind(&services.settings());
    services.settle();
    if (scene.drive) {
        scene.drive(services);
    }
    const std::unique_ptr<QWidget> widget = scene.make(services);
    widget->show();
    QCoreApplication::processEvents();
    if (scene.work) {
        scene.work(*widget);
        QCoreApplication::processEvents();
    }
    QImage image = wallpaper(widget->size(), widget->devicePixelRatioF());
    QPainter painter(&image);
    painter.drawPixmap(0, 0, widget->grab());
    painter.end();
    KestroTheme::setHighContrast(false);
    KestroTheme::bind(nullptr);
    return image;
}

int renderAll(const QDir& folder, const QString& scale, const QString& family) {
    motion::setReduced(true);
    window_compositing::setOverride(true);
    KestroFonts::setFamily(family);
    QString suffix = QLatin1Char('@') + scale + QStringLiteral("x.png");
    if (!family.isEmpty()) {
        suffix.prepend(QLatin1Char('-') + family.toLower().replace(QLatin1Char(' '), QLatin1Char('-')));
    }
    for (const Scene& scene : allScenes()) {
        if (!belongsTo(scene, scale, family)) {
            continue;
        }
        const QString path = folder.filePath(scene.name + suffix);
        if (!picture(scene).save(path)) {
            std::fprintf(stderr, "kestro_shots: cannot write %s\n", qPrintable(path));
            return 1;
        }
    }
    return 0;
}

int renderEverything(const QString& program, const QString& folder) {
    for (const Run& run : runs) {
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedChannels);
        child.start(program, {folder, QString::fromUtf8(run.scale), QString::fromUtf8(run.family)});
        child.waitForFinished(-1);
        if (child.exitStatus() != QProcess::NormalExit || child.exitCode() != 0) {
            return 1;
        }
    }
    return 0;
}

}  // namespace
}  // namespace kestro::shots

int main(int argc, char** argv) {
    const bool isOneRun = argc == 4;
    const kestro::SealedEnvironment environment(isOneRun ? argv[2] : "1");
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2 || !QDir().mkpath(arguments[1])) {
        std::fputs("usage: kestro_shots DIR\n", stderr);
        return 2;
    }
    if (isOneRun) {
        return kestro::shots::renderAll(QDir(arguments[1]), arguments[2], arguments[3]);
    }
    return kestro::shots::renderEverything(arguments[0], arguments[1]);
}
