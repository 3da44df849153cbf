#pragma once

#include "platform/desktop/lock_services.h"
#include "platform/desktop/wayland_idle_inhibition.h"
#include "platform/posix/descriptor.h"

#include <QSocketNotifier>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>

namespace kestro {

/// The screens of a Wayland compositor, kept on through a connection of our own. It exists only for as long as the
/// lock is wanted and possible, and the compositor drops the lock with it. Never blocks: a compositor that does
/// not answer in time counts as having refused, and one that goes takes the lock with it. Main thread.
class WaylandLock final : public ServiceLock {
public:
    /// Asks the compositor that listens at `socket`.
    WaylandLock(const QString& socket, std::chrono::milliseconds patience, std::function<void()> onChange);

    /// The socket of the session's compositor, which is independent of the toolkit's choice; empty: there is none.
    static QString socketOfSession();

    LockState state() const override { return state_; }
    void poll() override;

private:
    void connect(const QString& socket);
    void exchange();
    void send();
    void close();
    void settle();

    const std::function<void()> onChange_;
    LockState state_ = LockState::asking;
    WaylandIdleInhibition inhibition_;
    Descriptor socket_;
    std::unique_ptr<QSocketNotifier> notifier_;
    QTimer patience_;
    bool isPolling_ = false;
};

}  // namespace kestro
