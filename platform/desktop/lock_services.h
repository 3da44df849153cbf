#pragma once

#include "platform/desktop/lock_mechanism.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>

namespace kestro {

enum class LockState : std::uint8_t {
    asking,
    held,     ///< granted and, where the service can be asked, confirmed
    refused,  ///< also: not granted in time, or granted without any effect
};

/// One lock of one mechanism, from the request on. While this object exists, the lock is wanted: destroying it
/// withdraws the request or releases the lock, even one that is granted later. Main thread.
class ServiceLock {
public:
    virtual ~ServiceLock() = default;

    virtual LockState state() const = 0;

    /// Processes a reply that has arrived but is still queued in the event loop.
    virtual void poll() {}

    /// Asks the service again whether the lock is in effect.
    virtual void confirm() {}
};

/// The session's mechanisms. Never blocks. Main thread; outlives its locks.
class LockServices {
public:
    virtual ~LockServices() = default;

    /// Whether it is known which services there are.
    virtual bool isKnown() const = 0;

    /// The process that offers a mechanism now; empty: there is none.
    virtual QString owner(LockMechanism mechanism) const = 0;

    virtual LockSession session() const = 0;

    /// Asks the owner of a mechanism for a lock. `onChange` is called whenever the state changes, but neither
    /// inside this function nor inside `poll`; it may destroy the lock.
    [[nodiscard]] virtual std::unique_ptr<ServiceLock> ask(LockMechanism mechanism, const LockWish& wish,
                                                           std::function<void()> onChange) = 0;

    /// Processes replies that have arrived but are still queued in the event loop.
    virtual void poll() = 0;

    /// Called when the owners have changed, and after the machine has slept. One handler each.
    virtual void setHandlers(std::function<void()> onOwnersChanged, std::function<void()> onResumed) = 0;
};

}  // namespace kestro
