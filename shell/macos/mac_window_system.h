#pragma once

#include "shell/macos/native_application.h"
#include "shell/macos/native_windows.h"
#include "shell/window_system.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QWidget>

namespace kestro {

/// The windows of macOS. Those of the application get a transparent title bar of the system, which rounds their
/// corners, resizes them and makes them full screen; the toolkit takes care of the popover and of menus. Main
/// thread; both references outlive it.
class MacWindowSystem final : public QObject, public WindowSystem {
public:
    MacWindowSystem(NativeWindows& windows, NativeApplication& application)
        : windows_(windows), application_(application) {}

    void makeKeyAndOrderFront(QWidget& window) override;

    /// Keeps it out of Mission Control and of the cycle through the windows, and on the screen while another
    /// application is active.
    void keepOutOfTaskBars(QWidget& window) override;

    void setFloatingLevel(QWidget& window, bool isFloating) override;

    /// Null: nothing takes windows away.
    [[nodiscard]] std::unique_ptr<WithdrawalGuard> guardAgainstWithdrawal(QWidget&) override { return nullptr; }

    bool canPlaceWindows() const override { return true; }
    bool resizesAtEdges() const override { return true; }

    QRect availableArea(const QScreen& screen) const override;
    QRect areaClearOfPanels(const QScreen& screen) const override { return availableArea(screen); }

    /// Nothing to do: the toolkit reports each change.
    void onPanelsChanged(std::function<void()>) override {}

    void keepAbove(QWidget& window, QWidget* other) override;

    [[nodiscard]] std::unique_ptr<PressMonitor> watchPresses(std::function<void()> onPress) override;

protected:
    /// A click raises the lower window of a pair, and the toolkit gives a window its own look and level again when
    /// it leaves full screen.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using Stack = QHash<const QObject*, QPointer<QWidget>>;

    void dress(QWidget& window);
    void applyLevel(QWidget& window);
    void stack(const QObject* other);

    NativeWindows& windows_;
    NativeApplication& application_;
    Stack above_;  ///< the window to keep above another one
};

}  // namespace kestro
