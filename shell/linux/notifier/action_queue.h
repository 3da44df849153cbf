#pragma once

#include "core/base/request_queue.h"

#include <QTimer>

#include <functional>

namespace kestro {

/// Runs actions that other processes request, one in each turn of the event loop, after the caller has its reply.
/// An action that is requested again while it waits runs once, as requested last. Destruction drops the waiting
/// actions; an action may destroy the queue. Main thread.
class ActionQueue {
public:
    ActionQueue();

    /// Requests the action identified by `key`.
    void add(int key, std::function<void()> action);

private:
    struct Entry {
        int key = 0;
        std::function<void()> action;
        friend bool operator==(const Entry& left, const Entry& right) { return left.key == right.key; }
    };

    void runNext();

    RequestQueue<Entry> entries_;
    QTimer turn_;
};

}  // namespace kestro
