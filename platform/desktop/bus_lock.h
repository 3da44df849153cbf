#pragma once

#include "platform/desktop/bus_name_owners.h"
#include "platform/desktop/lock_services.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace kestro {

/// A lock of a service on a bus: request, grant, and confirmation where the service can be asked. A reply that
/// does not arrive in time counts as a refusal. Main thread.
class BusLock final : public QObject, public ServiceLock {
    Q_OBJECT

public:
    struct Timing {
        /// A service that has not replied after this time counts as having refused.
        std::chrono::milliseconds patience = std::chrono::seconds(25);
        /// When to ask a service that enforces its locks later.
        std::chrono::milliseconds enforcement = std::chrono::seconds(6);
    };

    /// Asks the present owner of the mechanism's service.
    BusLock(BusNameOwners& owners, LockMechanism mechanism, LockWish wish, const Timing& timing,
            std::function<void()> onChange);
    ~BusLock() override;

    LockState state() const override { return state_; }
    void poll() override;
    void confirm() override;

private Q_SLOTS:
    void onPortalResponse(const QDBusMessage& signal);

private:
    struct Attempt;

    void send();
    void take();
    void ask();
    void takeProof();
    void settle(LockState state);
    void settleAtPortal();
    void release();

    BusNameOwners& owners_;
    const LockMechanism mechanism_;
    const LockWish wish_;
    const QString service_;  // unique name of the connection that was asked
    QDBusConnection bus_;
    const std::function<void()> onChange_;
    LockState state_ = LockState::asking;
    bool isPolling_ = false;
    std::shared_ptr<Attempt> attempt_;
    std::optional<GrantedLock> lock_;
    std::optional<QDBusPendingCall> proof_;
    std::map<QString, std::uint32_t> portalResponses_;  // by request; one may arrive before the reply
    QTimer patience_;
    QTimer proofTimer_;
};

}  // namespace kestro
