#pragma once

#include <QPointer>
#include <QWidget>
#include <vector>

#include "core/base/subscription.h"

class QScreen;

namespace kestro {

class StripItemView;

/// The strip itself: a small bar of glass at the top right of the primary screen, above other windows and on
/// every workspace, that never takes the keyboard and reserves no room. Hidden while it has no items; follows
/// changes of the screens. Main thread.
class StripWindow : public QWidget {
public:
    StripWindow();
    ~StripWindow() override;

    /// Puts an item at the left end; it has to be this window's child.
    void add(StripItemView& item);

    /// Takes an item off, before it dies.
    void remove(StripItemView& item);

    /// Lays the items out again after one of them changed its width.
    void arrange();

    /// Makes the readout of the item at the right end the window's name, for window lists, screen readers and
    /// scripts.
    void nameAfterItems();

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void followPrimaryScreen();

    std::vector<StripItemView*> items_;
    std::vector<int> separators_;
    QPointer<QScreen> screen_;
    bool isComposited_ = true;
    Subscription palette_;
};

}  // namespace kestro
