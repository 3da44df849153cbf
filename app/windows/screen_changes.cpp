#include "app/windows/screen_changes.h"

#include <QGuiApplication>
#include <QScreen>

#include <utility>

namespace kestro {

ScreenChanges::ScreenChanges(std::function<void()> onChange) : onChange_(std::move(onChange)) {
    report_.setSingleShot(true);
    connect(&report_, &QTimer::timeout, this, [this] { onChange_(); });
    for (QScreen* screen : QGuiApplication::screens()) {
        follow(screen);
    }
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
        follow(screen);
        report_.start();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this] { report_.start(); });
}

void ScreenChanges::follow(QScreen* screen) {
    connect(screen, &QScreen::geometryChanged, this, [this] { report_.start(); });
    connect(screen, &QScreen::availableGeometryChanged, this, [this] { report_.start(); });
}

}  // namespace kestro
