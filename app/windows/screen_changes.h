#pragma once

#include <QObject>
#include <QTimer>

#include <functional>

class QScreen;

namespace kestro {

/// Reports when a screen is added, removed, moved or resized, or when the area that panels leave free changes:
/// from the event loop, since a window still belongs to the screen that is being removed. Main thread.
class ScreenChanges : public QObject {
public:
    explicit ScreenChanges(std::function<void()> onChange);

    /// Reports also that something else has changed the area for windows.
    void report() { report_.start(); }

private:
    void follow(QScreen* screen);

    std::function<void()> onChange_;
    QTimer report_;
};

}  // namespace kestro
