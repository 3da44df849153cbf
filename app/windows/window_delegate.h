#pragma once

class QWidget;

namespace kestro {

/// What the windows tell the application, on the main thread.
class WindowDelegate {
public:
    virtual ~WindowDelegate() = default;

    virtual void popoverDidShow() = 0;
    virtual void popoverDidClose() = 0;

    /// A window other than the popover appeared on or left the screen, by whatever way.
    virtual void windowVisibilityDidChange(QWidget& window) = 0;

    /// Whether a request to close the window, from the user or the window manager, may go on.
    virtual bool windowShouldClose(QWidget& window) = 0;

    /// The window has another size than the application gave it to fit its content.
    virtual void windowDidResize(QWidget& window) = 0;

    virtual void windowWillEnterFullScreen(QWidget& window) = 0;
    virtual void windowDidExitFullScreen(QWidget& window) = 0;
};

}  // namespace kestro
