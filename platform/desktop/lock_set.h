#pragma once

#include "platform/desktop/lock_services.h"

#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

namespace kestro {

/// One wish to stay awake, from creation to destruction: the locks of every mechanism that counts on this desktop.
/// It follows services that come, leave or refuse: a lock that is no longer needed is released once no request is
/// under way, so that there is no gap in between. A service that refuses while others hold is asked again a few
/// times: some own their name before they can answer. Main thread.
class LockSet {
public:
    enum class State {
        asking,   ///< the wish is not fulfilled yet
        held,     ///< at least one lock that fulfils the wish is known to hold
        lost,     ///< held before; waits for a service to return
        refused,  ///< every service that could fulfil it has refused, or there is none
    };

    /// `onChange` is called whenever the state or the holders may have changed, but not inside this constructor or
    /// `poll`; it must not destroy the set.
    LockSet(LockServices& services, LockWish wish, std::function<void()> onChange);
    LockSet(const LockSet&) = delete;
    LockSet& operator=(const LockSet&) = delete;

    State state() const;

    /// The mechanisms whose locks are held.
    std::vector<LockMechanism> holders() const;

    /// Processes replies that have arrived but are still queued in the event loop.
    void poll();

    /// The owners of services have changed.
    void ownersChanged();

    /// Asks every service whether its lock is still in effect, and asks those again that have refused.
    void confirm();

private:
    struct Entry {
        LockMechanism mechanism;
        QString owner;
        std::unique_ptr<ServiceLock> lock;
    };

    void update();
    bool addMissing();
    void changed();
    void forgetRefusals();
    void planRetry();
    const Entry* entryOf(LockMechanism mechanism) const;
    std::vector<LockMechanism> plan() const;
    bool isAny(LockState state) const;
    bool isFulfilled() const;

    LockServices& services_;
    const LockWish wish_;
    const std::function<void()> onChange_;
    std::vector<Entry> entries_;
    bool wasHeld_ = false;
    int retries_ = 0;
    QTimer retry_;
};

}  // namespace kestro
