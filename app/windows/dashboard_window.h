#pragma once

#include "app/windows/frame_animation.h"
#include "app/windows/surface_window.h"

#include <QRect>
#include <QSize>

#include <optional>

namespace kestro {

/// The dashboard's window: moved by its background, resized by its edges, zoomed by a double click on its
/// title band. It lives as long as the application; closing only hides it.
class KestroDashboardWindow final : public SurfaceWindow {
public:
    /// `width` is the content's optimal width; the height starts at 480.
    KestroDashboardWindow(WindowDelegate& delegate, WindowSystem& system, ContentFactory makeContent, int width);

    /// The frame that a windowed zoom restores.
    const std::optional<QRect>& preZoomFrame() const { return preZoomFrame_; }

    /// Zooms to the screen's visible area, or back. Not the system's full screen.
    void toggleWindowedFullScreen();

    /// The zoom button: leaves the system's full screen, or zooms within it.
    void zoom();

    /// Enters or leaves the system's full screen.
    void toggleFullScreen();

    /// Resizes the window until the user or another command changes it, keeping its bottom-left corner in place.
    /// Does nothing in full screen, where a window has no frame of its own.
    void resizeKeepingOrigin(QSize size);

    /// Fits the width to the content around the window's centre. Does not notify the delegate of this resize.
    void fitWidth(int optimalWidth);

    /// Makes the whole window visible on its screen: in the middle before it is first shown, afterwards by moving
    /// and shrinking it as little as possible, or, if it is zoomed, by zooming it to the new area. Does not notify
    /// the delegate of this resize. Does nothing in full screen or maximised.
    void fitToScreen();

protected:
    bool backgroundPressed(QPoint position) override;
    void keepSize(QSize points) override;
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// The frame on this window's screen for a wanted one.
    QRect placed(const QRect& wanted) const;
    void setFrame(const QRect& frame);
    void setOwnFrame(const QRect& frame);

    /// Starts moving to a frame, with a minimum size that is lower on a screen that is smaller.
    void moveTo(const QRect& frame);
    Qt::Edges edgesAt(QPoint position) const;
    void showResizeCursor(QPoint position);

    FrameAnimation frameAnimation_;
    std::optional<QRect> preZoomFrame_;
    QRect zoomedFrame_;  ///< of the last zoom to the screen's area; null before
    QSize settledSize_;  ///< the last size outside full screen that has been handled
    bool isFittingItself_ = false;
    bool wasFullScreen_ = false;
    bool isPlaced_ = false;
};

}  // namespace kestro
