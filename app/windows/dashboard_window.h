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
    KestroDashboardWindow(WindowDelegate& delegate, ContentFactory makeContent, int width);

    /// The frame to return to after a windowed zoom.
    const std::optional<QRect>& preZoomFrame() const { return preZoomFrame_; }

    /// Zooms to the screen's visible area, or back. Not the system's full screen.
    void toggleWindowedFullScreen();

    /// Enters or leaves the system's full screen.
    void toggleFullScreen();

    /// Gives the window a size that holds until the user or another command changes it, its bottom-left
    /// corner staying where it is. Does nothing in full screen, where a window has no frame of its own.
    void resizeKeepingOrigin(QSize size);

    /// Fits the width to the content about the window's centre. The delegate does not hear of this resize.
    void fitWidth(int optimalWidth);

    /// Puts the window in the middle of the screen if no screen shows its title band: at its first showing,
    /// and after the screen that it stood on has gone.
    void ensureReachable();

protected:
    bool backgroundPressed(QPoint position) override;
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setFrame(const QRect& frame);
    QRect availableArea() const;
    void showResizeCursor(QPoint position);

    FrameAnimation frameAnimation_;
    std::optional<QRect> preZoomFrame_;
    QSize settledSize_;  ///< the last size outside full screen that is accounted for
    bool isFittingWidth_ = false;
    bool wasFullScreen_ = false;
    bool isPlaced_ = false;
};

}  // namespace kestro
