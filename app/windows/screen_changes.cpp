#include "app/windows/screen_changes.h"

#include <QGuiApplication>
#include <QScreen>

#include <utility>

namespace kestro {

ScreenChanges::ScreenChanges(std::function<void()> onChange) : onChange_(std::move(onChange)) {
    for (QScreen* screen : QGuiApplication::screens()) {
        follow(screen);
    }
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
        follow(screen);
        onChange_();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this] { onChange_(); });
}

void ScreenChanges::follow(QScreen* screen) {
    connect(screen, &QScreen::geometryChanged, this, [this] { onChange_(); });
    connect(screen, &QScreen::availableGeometryChanged, this, [this] { onChange_(); });
}

}  // namespace kestro
