#include "platform/desktop/bus_lock.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>

#include <limits>
#include <utility>

namespace kestro {

namespace {

/// Whether the bus answers that the connection does not exist any more.
bool hasNoReceiver(const QDBusMessage& reply) {
    return reply.errorName() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner") ||
           reply.errorName() == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown");
}

}  // namespace

/// A request under way. It outlives the lock's object, so that a late grant is still released.
struct BusLock::Attempt {
    BusLock* owner;  // nullptr: the lock is no longer wanted
    LockMechanism mechanism;
    QString service;
    QDBusConnection bus;
    QDBusPendingCall call;
    bool isTaken;  // its reply has been processed

    void giveBack() const {
        const auto lock = lockFromReply(mechanism, call.reply());
        if (const auto release = lock ? releaseCall(mechanism, *lock, service) : std::nullopt) {
            bus.send(*release);
        }
    }
};

BusLock::BusLock(BusNameOwners& owners, LockMechanism mechanism, LockWish wish, const Timing& timing,
                 std::function<void()> onChange)
    : owners_(owners),
      mechanism_(mechanism),
      wish_(std::move(wish)),
      service_(owners.owner(serviceName(mechanism))),
      bus_(owners.bus()),
      onChange_(std::move(onChange)) {
    if (isPortal(mechanism_)) {
        bus_.connect(QString(), QString(), QStringLiteral("org.freedesktop.portal.Request"),
                     QStringLiteral("Response"), this, SLOT(onPortalResponse(QDBusMessage)));
    }
    patience_.setSingleShot(true);
    patience_.setInterval(timing.patience);
    connect(&patience_, &QTimer::timeout, this, [this] {
        release();
        settle(LockState::refused);
    });
    proofTimer_.setSingleShot(true);
    proofTimer_.setInterval(timing.enforcement);
    connect(&proofTimer_, &QTimer::timeout, this, &BusLock::ask);
    send();
}

BusLock::~BusLock() {
    release();
}

void BusLock::send() {
    // Addressed to one connection, because Qt 6.8 does not report the sender of a reply. No timeout on the bus: a
    // lock granted after the patience must still be released.
    const auto call = bus_.asyncCall(lockCall(mechanism_, service_, wish_), std::numeric_limits<int>::max());
    attempt_ = std::make_shared<Attempt>(Attempt{this, mechanism_, service_, bus_, call, false});
    patience_.start();
    auto* watcher = new QDBusPendingCallWatcher(call, QCoreApplication::instance());
    connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
            [attempt = attempt_](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                if (attempt->isTaken) {
                    return;
                }
                if (attempt->owner == nullptr) {
                    attempt->giveBack();
                } else {
                    attempt->owner->take();
                }
            });
}

void BusLock::poll() {
    isPolling_ = true;
    if (attempt_ && attempt_->call.isFinished()) {
        take();
    }
    if (proof_ && proof_->isFinished()) {
        takeProof();
    }
    isPolling_ = false;
}

void BusLock::confirm() {
    if (state_ == LockState::held) {
        ask();
    }
}

void BusLock::take() {
    const auto attempt = std::exchange(attempt_, nullptr);
    attempt->isTaken = true;
    const auto reply = attempt->call.reply();
    lock_ = lockFromReply(mechanism_, reply);
    if (!lock_) {
        if (hasNoReceiver(reply)) {
            owners_.refresh();
        }
        settle(LockState::refused);
    } else if (isPortal(mechanism_)) {
        settleAtPortal();
    } else if (isEnforcedLater(mechanism_)) {
        proofTimer_.start();
        settle(LockState::held);
    } else {
        patience_.stop();  // the question has a bound of its own
        ask();
    }
}

void BusLock::ask() {
    if (proof_) {
        return;
    }
    const auto question = proofCall(mechanism_, service_, wish_);
    if (!question) {
        settle(LockState::held);
        return;
    }
    proof_ = bus_.asyncCall(*question, patience_.interval());
    const auto* watcher = new QDBusPendingCallWatcher(*proof_, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        finished->deleteLater();
        if (proof_ && proof_->isFinished()) {
            takeProof();
        }
    });
}

void BusLock::takeProof() {
    const auto reply = std::exchange(proof_, std::nullopt)->reply();
    if (proofFromReply(mechanism_, reply, wish_).value_or(true)) {
        settle(LockState::held);
    } else {
        release();
        settle(LockState::refused);
    }
}

void BusLock::onPortalResponse(const QDBusMessage& signal) {
    const auto arguments = signal.arguments();
    if (signal.service() == service_ && !arguments.isEmpty() &&
        arguments.constFirst().metaType().id() == QMetaType::UInt) {
        portalResponses_[signal.path()] = arguments.constFirst().toUInt();
        settleAtPortal();
    }
}

/// The reply only names the request: its response says whether the backend has accepted it, 0, or ends it.
void BusLock::settleAtPortal() {
    const auto* const request = lock_ ? std::get_if<QDBusObjectPath>(&*lock_) : nullptr;
    const auto response = request != nullptr ? portalResponses_.find(request->path()) : portalResponses_.end();
    if (response == portalResponses_.end()) {
        return;
    }
    if (response->second == 0) {
        settle(LockState::held);
    } else {
        lock_.reset();
        settle(LockState::refused);
    }
}

void BusLock::settle(LockState state) {
    patience_.stop();
    if (std::exchange(state_, state) != state && !isPolling_) {
        const auto handler = onChange_;  // it may destroy this object
        handler();
    }
}

void BusLock::release() {
    if (attempt_) {
        if (attempt_->call.isFinished()) {
            attempt_->isTaken = true;
            attempt_->giveBack();
        }
        attempt_->owner = nullptr;
        attempt_.reset();
    }
    proof_.reset();
    proofTimer_.stop();
    if (const auto call = lock_ ? releaseCall(mechanism_, *lock_, service_) : std::nullopt) {
        bus_.send(*call);
    }
    lock_.reset();
}

}  // namespace kestro
