#pragma once

#include "core/base/subscription.h"

#include <QWidget>

#include <functional>
#include <utility>
#include <vector>

namespace kestro {

/// Whether the user can see a widget: it is shown and its window is not minimised.
inline bool isOnScreen(const QWidget& widget) {
    return widget.isVisible() && !widget.window()->isMinimized();
}

/// Keeps a widget up to date while it is on the screen, and lets it rest while it is not. A member of the widget.
/// Main thread.
class WhileOnScreen final : public QObject {
public:
    /// `catchUp` runs whenever `owner` appears on the screen, because it or its window is shown or restored.
    WhileOnScreen(QWidget& owner, std::function<void()> catchUp);

    /// Calls `show` after each assignment of `value` while the owner is on the screen.
    template <typename Value>
    void follow(const Value& value, std::function<void()> show) {
        subscriptions_.push_back(value.subscribe([this, show = std::move(show)](const auto&) {
            if (isOnScreen(owner_)) {
                show();
            }
        }));
    }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& owner_;
    std::function<void()> catchUp_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace kestro
