#pragma once

#include "app/windows/surface_window.h"
#include "core/platform/clock.h"

#include <QRect>
#include <QVariantAnimation>

#include <chrono>
#include <memory>
#include <optional>

namespace kestro {

class PressMonitor;

/// The quick-glance popover: a small window beside the status item that closes when it loses the keyboard focus,
/// on Escape, and on a press elsewhere. It opens and closes with a short fade. A menu that opens while it closes
/// ends the fade first: hiding a window also closes the menus in front of it.
class PopoverWindow final : public SurfaceWindow {
public:
    PopoverWindow(WindowDelegate& delegate, WindowSystem& system, const Clock& clock, ContentFactory makeContent);
    ~PopoverWindow() override;

    /// Shows the popover beside `anchor`, the status item's area on the screen; null: unknown.
    void showRelativeTo(const QRect& anchor);

    /// Moves it beside another anchor while it is open, without taking the keyboard focus.
    void moveBeside(const QRect& anchor);

    /// Whether it is open; false while it fades out.
    bool isShown() const { return isShown_; }

    void orderOut() override;

    /// Whether the click being handled is the one that closed the popover: a panel reports a click after its
    /// press has closed the popover, and that click must not reopen it. True for at most one click per closing,
    /// within the duration of a click. `item` is the clicked item's area on the screen, since a press elsewhere
    /// is not part of the click; null: unknown.
    bool takesBack(const QRect& item);

protected:
    void showEvent(QShowEvent* event) override;
    void visibilityDidChange() override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// When and where it closed by itself.
    struct Dismissal {
        MonotonicTime time;
        QPoint pointer;
    };

    /// Whether one of its controls has opened the menu.
    bool isOwn(const QWidget& menu) const;

    void restBeside(const QRect& anchor);
    void dismiss();
    void pressedSomewhere();
    int fadeDuration(std::chrono::milliseconds wanted) const;
    void fadeTo(double opacity, int milliseconds);
    void takeStep(double opacity);

    const Clock& clock_;
    QPoint restingPlace_;
    QVariantAnimation fade_;
    std::unique_ptr<PressMonitor> pressMonitor_;
    std::optional<Dismissal> dismissal_;
    bool isShown_ = false;
};

}  // namespace kestro
