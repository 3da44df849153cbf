#pragma once

#include "platform/desktop/bus_name_owners.h"
#include "platform/desktop/inhibition_backend.h"

#include <QDBusPendingCall>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <set>

namespace kestro {

/// The buses that inhibitions use, and how long to wait for one service's reply before asking the next one.
struct InhibitionBuses {
    BusNameOwners& session;
    BusNameOwners& system;
    std::chrono::milliseconds patience;

    BusNameOwners& of(InhibitionBackend backend) const { return isOnSystemBus(backend) ? system : session; }
    bool isKnown() const { return session.isKnown() && system.isKnown(); }
};

/// One wish to stay awake, from creation to destruction, and the lock that currently fulfils it. It holds a lock
/// of at most one backend: the best one that is on the bus and does not refuse. When that one leaves the bus or
/// a better one appears, it asks again; while there is none, it waits.
///
/// Every request to a service is a separate attempt. A lock granted to an obsolete attempt, because the wish was
/// withdrawn or moved to another service, is released at once. Main thread.
class PowerInhibition {
public:
    enum class State { waiting, asking, held, refused };

    /// `onRefused` is called from the event loop at most once, when every service has refused, or when there is
    /// none and never was; it may destroy the inhibition.
    PowerInhibition(const InhibitionBuses& buses, InhibitionWish wish, std::function<void()> onRefused);

    /// Releases the lock.
    ~PowerInhibition();
    PowerInhibition(const PowerInhibition&) = delete;
    PowerInhibition& operator=(const PowerInhibition&) = delete;

    State state() const { return state_; }

    /// Processes a reply that has arrived but is still queued in the event loop; asks a service if the owners
    /// have become known.
    void poll();

    /// The owner of a backend's name has changed.
    void ownersChanged(InhibitionBackend changed);

    /// The portal has ended the request at this path.
    void requestEnded(const QString& path);

private:
    struct Attempt;

    void askBest();
    void ask(InhibitionBackend backend, const QString& service, bool weakest);
    void take(const std::shared_ptr<Attempt>& attempt);
    void giveUpAttempt();
    void releaseLock();
    void refuse();
    bool isBetterThan(InhibitionBackend changed, InhibitionBackend current) const;
    QString owner(InhibitionBackend backend) const;
    bool isOwned(InhibitionBackend backend) const;
    std::array<InhibitionBackend, inhibitionBackendCount> order() const;

    InhibitionBuses buses_;
    InhibitionWish wish_;
    std::function<void()> onRefused_;
    State state_ = State::waiting;
    bool wasGranted_ = false;
    std::set<InhibitionBackend> refusedBy_;
    std::shared_ptr<Attempt> attempt_;  // the one whose answer counts
    InhibitionBackend heldBackend_{};
    QString grantedBy_;  // unique name
    std::optional<InhibitionLock> lock_;
    QTimer patience_;
};

}  // namespace kestro
