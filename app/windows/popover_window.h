#pragma once

#include "app/windows/surface_window.h"
#include "core/platform/clock.h"

#include <QRect>
#include <QVariantAnimation>

#include <memory>
#include <optional>

namespace kestro {

class PressMonitor;

/// The quick-glance popover: a small window beside the status item that closes when it loses the keyboard,
/// on Escape, and on a press elsewhere. It opens and closes with a short fade.
class PopoverWindow final : public SurfaceWindow {
public:
    PopoverWindow(WindowDelegate& delegate, const Clock& clock, ContentFactory makeContent);
    ~PopoverWindow() override;

    /// Shows it beside `anchor`, the status item's place on the screen; a null one is unknown.
    void showRelativeTo(const QRect& anchor);

    /// Whether it is open; no longer while it fades away.
    bool isShown() const { return isShown_; }

    void orderOut() override;

    /// Whether the click being handled is what closed it: a panel reports a click after the press has closed
    /// the popover, and that click means "close". At most one click for each closing, within the time that a
    /// click takes. `item` is where the clicked item is on the screen: a press elsewhere was not part of the
    /// click. A null one is unknown.
    bool takesBack(const QRect& item);

protected:
    void showEvent(QShowEvent* event) override;
    void visibilityDidChange() override;
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// How it closed by itself.
    struct Dismissal {
        MonotonicTime time;
        QPoint pointer;
    };

    void dismiss();
    void pressedSomewhere();
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
