#pragma once

#include "app/windows/window_delegate.h"
#include "shell/window_system.h"
#include "ui/controls/while_on_screen.h"

#include <QPoint>
#include <QSize>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

namespace kestro {

/// A frameless, translucent window that its content fills. The content is built when the window is first shown,
/// so that an unopened window costs next to nothing. Closing hides it, if the delegate agrees. Where the window
/// system cannot blend, the content paints itself opaque.
class SurfaceWindow : public QWidget {
public:
    /// Makes the content as a child of its argument.
    using ContentFactory = std::function<QWidget*(QWidget*)>;

    SurfaceWindow(WindowDelegate& delegate, WindowSystem& system, ContentFactory makeContent, const QString& title,
                  Qt::WindowFlags type = Qt::Window);

    /// Whether it is on the screen: shown and not minimised.
    bool isOnScreen() const { return kestro::isOnScreen(*this); }

    virtual void orderOut() { hide(); }

    /// The area for windows on the screen that shows most of this one; null without a screen.
    QRect availableArea() const;

    /// Gives back the window's content, its picture and its window on the screen while it is hidden; they are made
    /// again when it is shown. Its frame and its state stay.
    void releaseContent();

protected:
    WindowDelegate& delegate() { return delegate_; }
    WindowSystem& system() const { return system_; }

    /// Notifies the delegate that the window has appeared or disappeared.
    virtual void visibilityDidChange() { delegate_.windowVisibilityDidChange(*this); }

    /// Handles a press on the window's background before it can start a drag. True: handled.
    virtual bool backgroundPressed(QPoint) { return false; }

    /// Takes its size in points again on a screen of another scale, where it would keep its pixels.
    virtual void keepSize(QSize points) { resize(points); }

    /// Whether its size is an interim one, until keepSize is called.
    bool isChangingScale() const { return keptSize_.has_value(); }

    /// For a window that fades out before it is hidden.
    void willHide() {
        if (withdrawalGuard_) {
            withdrawalGuard_->windowWillHide();
        }
    }

    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void screenDidChange(const QScreen* screen);
    void keepSizeAtScale(double scale, const QSize& size);
    void scaleDidChange();

    WindowDelegate& delegate_;
    WindowSystem& system_;
    ContentFactory makeContent_;
    QWidget* content_ = nullptr;
    const std::unique_ptr<WithdrawalGuard> withdrawalGuard_;
    double scale_ = 1;                 ///< of the screen on which it is shown
    std::optional<QSize> keptSize_;    ///< the size in points to take again
    std::optional<QPoint> pressedAt_;  ///< on the screen: where a drag may have begun
};

}  // namespace kestro
