#pragma once

#include "shell/window_system.h"

#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <map>
#include <utility>

namespace kestro::test {

/// A window system that shows windows as the toolkit does, lets a test press anywhere on the screen, and
/// remembers the levels.
class PlainWindowSystem final : public WindowSystem {
public:
    void makeKeyAndOrderFront(QWidget& window) override {
        if (onOrderFront) {
            onOrderFront(window);
        }
        window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
        window.show();
        window.raise();
        window.activateWindow();
    }

    void keepOutOfTaskBars(QWidget&) override {}
    void setFloatingLevel(QWidget& window, bool isFloating) override { levels_[&window] = isFloating; }
    std::unique_ptr<WithdrawalGuard> guardAgainstWithdrawal(QWidget&) override { return nullptr; }
    bool canPlaceWindows() const override { return true; }
    bool resizesAtEdges() const override { return resizesWindows; }
    QRect availableArea(const QScreen&) const override { return available; }
    QRect areaClearOfPanels(const QScreen& screen) const override { return screen.availableGeometry(); }
    void onPanelsChanged(std::function<void()> onChange) override { panelsChanged = std::move(onChange); }
    void keepAbove(QWidget& window, QWidget* other) override { above = {&window, other}; }

    std::unique_ptr<PressMonitor> watchPresses(std::function<void()> onPress) override {
        onPress_ = std::move(onPress);
        return std::make_unique<PressMonitor>();
    }

    /// A press of a mouse button somewhere on the screen.
    void press() const { onPress_(); }

    bool isFloating(const QWidget& window) const {
        const auto level = levels_.find(&window);
        return level != levels_.end() && level->second;
    }

    bool resizesWindows = false;                      ///< at their edges
    QRect available{0, 0, 1920, 1080};                ///< on every screen
    std::pair<const QWidget*, const QWidget*> above;  ///< the last window kept above another

    std::function<void(const QWidget&)> onOrderFront;  ///< if set, called before a window is ordered front
    std::function<void()> panelsChanged;               ///< as set by the application

private:
    std::map<const QWidget*, bool> levels_;
    std::function<void()> onPress_;
};

}  // namespace kestro::test
