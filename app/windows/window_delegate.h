#pragma once

class QWidget;

namespace kestro {

/// Receives the events of the windows, on the main thread.
class WindowDelegate {
public:
    virtual ~WindowDelegate() = default;

    virtual void popoverDidShow() = 0;
    virtual void popoverDidClose() = 0;

    /// A window other than the popover appeared on or left the screen, for whatever reason.
    virtual void windowVisibilityDidChange(QWidget& window) = 0;

    /// Whether a request to close the window, from the user or the window manager, may proceed.
    virtual bool windowShouldClose(QWidget& window) = 0;

    /// The window's size differs from the one that the application chose to fit its content.
    virtual void windowDidResize(QWidget& window) = 0;

    virtual void windowWillEnterFullScreen(QWidget& window) = 0;
    virtual void windowDidExitFullScreen(QWidget& window) = 0;
};

}  // namespace kestro
