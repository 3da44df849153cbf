#include "shell/linux/notifier/action_queue.h"

#include <utility>

namespace kestro {

ActionQueue::ActionQueue() {
    // With a timer of zero length, other events are handled between two actions.
    turn_.setSingleShot(true);
    QObject::connect(&turn_, &QTimer::timeout, &turn_, [this] { runNext(); });
}

void ActionQueue::add(int key, std::function<void()> action) {
    entries_.add({key, std::move(action)});
    if (!turn_.isActive()) {
        turn_.start(0);
    }
}

void ActionQueue::runNext() {
    const auto next = entries_.take();
    if (!entries_.isEmpty()) {
        turn_.start(0);
    }
    if (next) {
        next->action();
    }
}

}  // namespace kestro
