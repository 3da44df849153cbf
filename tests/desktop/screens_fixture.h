#pragma once

#include "tests/desktop/shell_fixture.h"

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

#include <string>

namespace kestro {

/// A desktop of one screen of that size in pixels, which can be divided into more.
struct ScreensFixture : ShellFixture {
    explicit ScreensFixture(QSize size, DesktopPanel panel = DesktopPanel::none)
        : ShellFixture(panel, size), screen(QPoint(), size) {}

    /// Moves a window, again if its opening motion moves it back.
    bool moves(const QString& title, QPoint place) {
        return waitUntil([&] {
            session.output(QStringLiteral("xdotool"), {QStringLiteral("windowmove"), window(title)->identifier,
                                                       QString::number(place.x()), QString::number(place.y())});
            return frame(title)->topLeft() == place;
        });
    }

    void monitor(const char* name, const char* geometry, const char* output) const {
        session.output(QStringLiteral("xrandr"), {QStringLiteral("--setmonitor"), QString::fromLatin1(name),
                                                  QString::fromLatin1(geometry), QString::fromLatin1(output)});
    }

    static std::string describe(const QRect& frame) {
        return QStringLiteral("%1 × %2 at %3, %4")
            .arg(frame.width())
            .arg(frame.height())
            .arg(frame.x())
            .arg(frame.y())
            .toStdString();
    }

    const QRect screen;
};

}  // namespace kestro
