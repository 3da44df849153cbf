#include "platform/desktop/power_inhibition.h"

#include <QCoreApplication>
#include <QDBusError>
#include <QDBusPendingCallWatcher>

#include <algorithm>
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

struct PowerInhibition::Attempt {
    PowerInhibition* owner;  // nullptr: the reply no longer counts
    InhibitionBackend backend;
    QString service;  // unique name of the connection that was asked
    bool weakest;
    QDBusConnection bus;
    QDBusPendingCall call;
    bool taken = false;

    /// Releases a lock that was granted too late.
    void giveBack() const {
        const auto lock = lockFromReply(backend, call.reply());
        if (const auto release = lock ? releaseCall(backend, *lock, service) : std::nullopt) {
            bus.send(*release);
        }
    }
};

PowerInhibition::PowerInhibition(const InhibitionBuses& buses, InhibitionWish wish,
                                 std::function<void()> onRefused)
    : buses_(buses), wish_(std::move(wish)), onRefused_(std::move(onRefused)) {
    patience_.setSingleShot(true);
    QObject::connect(&patience_, &QTimer::timeout, &patience_, [this] {
        refusedBy_.insert(attempt_->backend);
        giveUpAttempt();
        askBest();
    });
    askBest();
}

PowerInhibition::~PowerInhibition() {
    giveUpAttempt();
    releaseLock();
}

void PowerInhibition::poll() {
    if (const auto attempt = attempt_; attempt && attempt->call.isFinished()) {
        take(attempt);
    } else if (state_ == State::waiting) {
        askBest();
    }
}

void PowerInhibition::ownersChanged(InhibitionBackend changed) {
    if (state_ == State::refused) {
        return;
    }
    const auto concerns = [&](InhibitionBackend current) {
        return changed == current || isBetterThan(changed, current);
    };
    refusedBy_.erase(changed);
    if (state_ == State::waiting || (state_ == State::held && concerns(heldBackend_)) ||
        (attempt_ && concerns(attempt_->backend))) {
        giveUpAttempt();
        releaseLock();
        askBest();
    }
}

void PowerInhibition::requestEnded(const QString& path) {
    const auto* request = lock_ ? std::get_if<QDBusObjectPath>(&*lock_) : nullptr;
    if (request != nullptr && request->path() == path) {
        lock_.reset();
        refusedBy_.insert(InhibitionBackend::portal);
        askBest();
    }
}

void PowerInhibition::askBest() {
    state_ = State::waiting;
    if (!buses_.isKnown()) {
        return;
    }
    for (const auto backend : order()) {
        if (isOwned(backend) && !refusedBy_.contains(backend) && canInhibit(backend, wish_)) {
            // An idle lock is never in the user's way: only a sleep lock asks for the weakest form.
            ask(backend, owner(backend), backend == InhibitionBackend::logind && !wish_.displayAndSystem);
            return;
        }
    }
    // The service that granted the lock before may return.
    if (!wasGranted_ || refusedBy_.contains(heldBackend_)) {
        refuse();
    }
}

void PowerInhibition::ask(InhibitionBackend backend, const QString& service, bool weakest) {
    state_ = State::asking;
    const auto& bus = buses_.of(backend).bus();
    // Addressed to one connection, because Qt 6.8 does not report the sender of a reply. No timeout on the bus: a
    // lock granted after `patience` must still be released.
    const auto call =
        bus.asyncCall(inhibitCall(backend, service, wish_, weakest), std::numeric_limits<int>::max());
    attempt_ = std::make_shared<Attempt>(Attempt{this, backend, service, weakest, bus, call});
    patience_.start(buses_.patience);
    // Outlives this object, so that a late grant is still released.
    auto* watcher = new QDBusPendingCallWatcher(call, QCoreApplication::instance());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [attempt = attempt_](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         if (attempt->owner != nullptr) {
                             attempt->owner->take(attempt);
                         } else if (!attempt->taken) {
                             attempt->giveBack();
                         }
                     });
}

void PowerInhibition::take(const std::shared_ptr<Attempt>& attempt) {
    giveUpAttempt();
    attempt->taken = true;
    const auto reply = attempt->call.reply();
    if (auto lock = lockFromReply(attempt->backend, reply)) {
        heldBackend_ = attempt->backend;
        lock_ = std::move(lock);
        grantedBy_ = attempt->service;
        state_ = State::held;
        wasGranted_ = true;
    } else if (attempt->weakest && QDBusError(reply).type() == QDBusError::InvalidArgs) {
        ask(attempt->backend, attempt->service, false);
    } else {
        refusedBy_.insert(attempt->backend);
        if (hasNoReceiver(reply)) {
            buses_.of(attempt->backend).refresh();
        }
        askBest();
    }
}

void PowerInhibition::giveUpAttempt() {
    patience_.stop();
    if (attempt_) {
        attempt_->owner = nullptr;
        attempt_.reset();
    }
}

void PowerInhibition::releaseLock() {
    if (!lock_) {
        return;
    }
    if (const auto call = releaseCall(heldBackend_, *lock_, grantedBy_)) {
        buses_.of(heldBackend_).bus().send(*call);
    }
    lock_.reset();
}

void PowerInhibition::refuse() {
    state_ = State::refused;
    // Deferred: a caller that is asking right now reads the state itself.
    QMetaObject::invokeMethod(
        &patience_, [this] { onRefused_(); }, Qt::QueuedConnection);
}

QString PowerInhibition::owner(InhibitionBackend backend) const {
    return buses_.of(backend).owner(serviceName(backend));
}

bool PowerInhibition::isOwned(InhibitionBackend backend) const {
    return !owner(backend).isEmpty();
}

bool PowerInhibition::isBetterThan(InhibitionBackend changed, InhibitionBackend current) const {
    const auto ranking = order();
    return isOwned(changed) && canInhibit(changed, wish_) &&
           std::ranges::find(ranking, changed) < std::ranges::find(ranking, current);
}

std::array<InhibitionBackend, inhibitionBackendCount> PowerInhibition::order() const {
    return backendOrder(wish_.displayAndSystem, isOwned(InhibitionBackend::freedesktopPowerManagement));
}

}  // namespace kestro
