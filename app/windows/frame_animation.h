#pragma once

#include <QElapsedTimer>
#include <QRect>
#include <QTimer>
#include <QVariantAnimation>

class QScreen;
class QWidget;

namespace kestro {

/// Moves and resizes a window in one motion, or at once when the window is hidden or the desktop has animations
/// off. A window that is moved to another screen meanwhile takes its size there. Main thread; belongs to the
/// window.
class FrameAnimation {
public:
    explicit FrameAnimation(QWidget& window);

    /// Starts moving towards `target`; a running motion changes direction. If a window manager pushed the window
    /// aside while it grew, the position is requested once more at the end.
    void start(const QRect& target);

    /// Stops at the current frame.
    void stop();

    /// Jumps to the target.
    void finish();

    /// The window's frame, or the target of a running motion.
    QRect frame() const;

    /// Whether the last motion can explain that the window has `size`: the window system still reports
    /// intermediate sizes shortly after the motion has ended.
    bool explains(const QSize& size) const;

private:
    /// Whether the window has been moved to a screen to which the motion does not lead.
    bool isElsewhere() const;

    void step(const QRect& frame);
    void settle();

    QWidget& window_;
    QVariantAnimation animation_;
    QTimer settling_;
    const QScreen* screen_ = nullptr;  ///< of the start; only compared
    QSize from_;
    QSize to_;
    QElapsedTimer sinceStart_;
};

}  // namespace kestro
