#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace kestro {

/// Runs the event loop until `condition` holds. False: it did not within a deadline that only a hanging test
/// reaches.
template <typename Condition>
bool waitUntil(Condition condition, std::chrono::milliseconds deadline = std::chrono::seconds(20)) {
    const QDeadlineTimer limit(deadline);
    // A condition may become true without an event.
    QTimer alarm;
    alarm.start(std::chrono::milliseconds(5));
    while (!condition()) {
        if (limit.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

}  // namespace kestro
