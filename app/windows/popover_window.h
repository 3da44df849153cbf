#pragma once

#include "app/windows/surface_window.h"
#include "core/platform/clock.h"

#include <QRect>

#include <optional>

namespace kestro {

/// The quick-glance popover: a small window beside the status item that closes when it loses the keyboard,
/// on Escape, and on a press elsewhere.
class PopoverWindow final : public SurfaceWindow {
public:
    PopoverWindow(WindowDelegate& delegate, const Clock& clock, ContentFactory makeContent);

    /// Shows it beside `anchor`, the status item's place on the screen; a null one is unknown.
    void showRelativeTo(const QRect& anchor);

    /// Whether it closed by itself so shortly ago that the click being handled is what closed it. A panel
    /// reports a click after the press has taken the keyboard away, and that click means "close".
    bool wasJustDismissed() const;

    void setVisible(bool visible) override;

protected:
    void visibilityDidChange() override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void dismiss();

    const Clock& clock_;
    std::optional<MonotonicTime> dismissedAt_;
    bool isChangingVisibility_ = false;
};

}  // namespace kestro
