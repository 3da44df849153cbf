#pragma once

#include <QObject>

#include <functional>

class QScreen;

namespace kestro {

/// Reports when a screen is added, removed, moved or resized, or when the area that panels leave free changes.
/// Main thread.
class ScreenChanges : public QObject {
public:
    explicit ScreenChanges(std::function<void()> onChange);

private:
    void follow(QScreen* screen);

    std::function<void()> onChange_;
};

}  // namespace kestro
