#pragma once

#include <QElapsedTimer>
#include <QRect>
#include <QTimer>
#include <QVariantAnimation>

class QWidget;

namespace kestro {

/// Moves and resizes a window in one motion, or at once when the window is hidden or the desktop
/// asks for no animations. Main thread; belongs to the window.
class FrameAnimation {
public:
    explicit FrameAnimation(QWidget& window);

    /// Starts towards `target`; a motion under way turns towards it. A window manager that pushed the window
    /// aside while it grew is asked once more, at the end, for the place.
    void start(const QRect& target);

    /// Ends where the window is now.
    void stop();

    /// Ends at the target.
    void finish();

    /// Where the window is, or will be at the end of a motion under way.
    QRect frame() const;

    /// Whether the window may take `size` because of the motion that was started last: sizes on its way
    /// come back from the window system a little after it has ended.
    bool explains(const QSize& size) const;

private:
    void settle();

    QWidget& window_;
    QVariantAnimation animation_;
    QTimer settling_;
    QSize from_;
    QSize to_;
    QElapsedTimer sinceStart_;
};

}  // namespace kestro
