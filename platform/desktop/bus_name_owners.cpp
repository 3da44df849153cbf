#include "platform/desktop/bus_name_owners.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <algorithm>
#include <utility>

namespace kestro {

namespace {

QDBusMessage callToBus(const char* member) {
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                          QStringLiteral("/org/freedesktop/DBus"),
                                          QStringLiteral("org.freedesktop.DBus"), QString::fromLatin1(member));
}

}  // namespace

BusNameOwners::BusNameOwners(BusLink& link, const QStringList& names, Handler handler)
    : link_(link), names_(names), handler_(std::move(handler)) {
    QObject::connect(&link_, &BusLink::changed, &context_, [this] { restart(); });
    start();
}

void BusNameOwners::start() {
    if (!link_.isConnected()) {
        return;
    }
    watch_ = std::make_unique<Watch>();
    watch_->watcher.setConnection(bus());
    watch_->watcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    watch_->watcher.setWatchedServices(names_);
    QObject::connect(&watch_->watcher, &QDBusServiceWatcher::serviceOwnerChanged, &watch_->context,
                     [this](const QString& name, const QString&, const QString& owner) { setOwner(name, owner); });
    for (const auto& name : names_) {
        const auto call = bus().asyncCall(callToBus("GetNameOwner") << name);
        questions_.push_back({name, call});
        const auto* answer = new QDBusPendingCallWatcher(call, &watch_->context);
        QObject::connect(answer, &QDBusPendingCallWatcher::finished, &watch_->context,
                         [this](QDBusPendingCallWatcher* finished) {
                             finished->deleteLater();
                             poll();
                         });
    }
}

void BusNameOwners::restart() {
    watch_.reset();
    questions_.clear();
    refreshes_ = 0;
    start();
    for (const auto& name : names_) {
        setOwner(name, QString());
    }
    if (isKnown()) {
        handler_(QString());
    }
}

QString BusNameOwners::owner(const QString& name) const {
    const auto found = owners_.find(name);
    return found == owners_.end() ? QString() : found->second;
}

void BusNameOwners::refresh() {
    if (!watch_) {
        return;
    }
    ++refreshes_;
    // Any answer of the bus arrives after the changes before it.
    const auto* answer = new QDBusPendingCallWatcher(bus().asyncCall(callToBus("GetId")), &watch_->context);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, &watch_->context,
                     [this](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         --refreshes_;
                         if (isKnown()) {
                             handler_(QString());
                         }
                     });
}

void BusNameOwners::poll() {
    const auto answered =
        std::stable_partition(questions_.begin(), questions_.end(),
                              [](const Question& question) { return !question.call.isFinished(); });
    const std::vector<Question> taken(answered, questions_.end());
    questions_.erase(answered, questions_.end());
    for (const auto& question : taken) {
        const QDBusPendingReply<QString> reply = question.call;
        if (!reply.isError()) {
            setOwner(question.name, reply.value());
        }
    }
    if (!taken.empty() && isKnown()) {
        handler_(QString());
    }
}

void BusNameOwners::setOwner(const QString& name, const QString& owner) {
    if (std::exchange(owners_[name], owner) != owner) {
        handler_(name);
    }
}

}  // namespace kestro
