#pragma once

#include "core/base/subscription.h"
#include "shell/linux/panel_space.h"

#include <QPointer>
#include <QRect>
#include <QWidget>

#include <functional>
#include <vector>

class QScreen;

namespace kestro {

class StripItemView;

/// The strip itself: a small glass bar at the top right of the primary screen, above other windows and on every
/// workspace, that never takes the keyboard focus and reserves no space. Hidden while it has no items; follows
/// screen changes. Main thread.
class StripWindow : public QWidget {
public:
    /// `onFrameChange` is called after it has appeared, moved, changed its size or disappeared.
    explicit StripWindow(std::function<void()> onFrameChange);
    ~StripWindow() override;

    /// Its frame on the screen; null while it is hidden.
    QRect occupiedFrame() const { return isVisible() ? geometry() : QRect(); }

    /// Adds an item at the left end; it must be a child of this window.
    void add(StripItemView& item);

    /// Removes an item before it is destroyed.
    void remove(StripItemView& item);

    /// Lays the items out again after one of them has changed its width.
    void arrange();

    /// Uses the readout of the rightmost item as the window's name, for window lists, screen readers and
    /// scripts.
    void nameAfterItems();

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void followPrimaryScreen();
    void measureScreen();
    void layOut();

    std::function<void()> onFrameChange_;
    QRect reportedFrame_;
    std::vector<StripItemView*> items_;
    std::vector<int> separators_;
    QPointer<QScreen> screen_;
    QRect available_;  ///< of the screen: what panels leave free
    PanelSpaceMonitor panels_{[this] { measureScreen(); }};
    bool isComposited_ = true;
    Subscription palette_;
};

}  // namespace kestro
