#pragma once

#include <QObject>

#include <functional>

class QScreen;

namespace kestro {

/// Tells when a screen comes, goes, or changes its place, its size or the area that panels leave free, as long
/// as it lives. Main thread.
class ScreenChanges : public QObject {
public:
    explicit ScreenChanges(std::function<void()> onChange);

private:
    void follow(QScreen* screen);

    std::function<void()> onChange_;
};

}  // namespace kestro
