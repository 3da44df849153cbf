#pragma once

#include "shell/linux/panel_space.h"
#include "shell/window_system.h"

namespace kestro {

class StatusBar;

/// The window system of X11 and Wayland desktops. On Wayland the compositor decides about placement, levels and
/// activation, based on the activation token that the panel passed with the click, if any.
class LinuxWindowSystem final : public WindowSystem {
public:
    /// Windows keep clear of the bar's own window.
    explicit LinuxWindowSystem(const StatusBar& statusBar) : statusBar_(statusBar) {}

    void makeKeyAndOrderFront(QWidget& window) override;

    /// With _NET_WM_STATE_SKIP_TASKBAR on X11, where the window manager forgets it when the window is hidden.
    void keepOutOfTaskBars(QWidget& window) override;

    /// With _NET_WM_STATE_ABOVE on X11.
    void setFloatingLevel(QWidget& window, bool isFloating) override;

    /// Null on other window systems than X11.
    [[nodiscard]] std::unique_ptr<WithdrawalGuard> guardAgainstWithdrawal(QWidget& window) override;

    /// False on Wayland.
    bool canPlaceWindows() const override;

    QRect availableArea(const QScreen& screen) const override;
    QRect areaClearOfPanels(const QScreen& screen) const override;
    void onPanelsChanged(std::function<void()> onChange) override;

    /// As a transient window, which window managers keep above its parent. On Wayland a compositor learns of the
    /// parent when the window is next shown.
    void keepAbove(QWidget& window, QWidget* other) override;

    /// With raw events of the X Input Extension 2; null on other window systems.
    [[nodiscard]] std::unique_ptr<PressMonitor> watchPresses(std::function<void()> onPress) override;

private:
    const StatusBar& statusBar_;
    std::unique_ptr<PanelSpaceMonitor> panels_;
};

}  // namespace kestro
