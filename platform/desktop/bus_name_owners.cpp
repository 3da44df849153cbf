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

BusNameOwners::BusNameOwners(const QDBusConnection& bus, const QStringList& names, Handler handler)
    : bus_(bus), handler_(std::move(handler)) {
    if (!bus_.isConnected()) {
        return;
    }
    watcher_.setConnection(bus_);
    watcher_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    watcher_.setWatchedServices(names);
    QObject::connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, &context_,
                     [this](const QString& name, const QString&, const QString& owner) { setOwner(name, owner); });
    for (const auto& name : names) {
        const auto call = bus_.asyncCall(callToBus("GetNameOwner") << name);
        questions_.push_back({name, call});
        const auto* answer = new QDBusPendingCallWatcher(call, &context_);
        QObject::connect(answer, &QDBusPendingCallWatcher::finished, &context_,
                         [this](QDBusPendingCallWatcher* finished) {
                             finished->deleteLater();
                             poll();
                         });
    }
}

QString BusNameOwners::owner(const QString& name) const {
    const auto found = owners_.find(name);
    return found == owners_.end() ? QString() : found->second;
}

void BusNameOwners::refresh() {
    ++refreshes_;
    // Any answer of the bus arrives after the changes before it.
    const auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(callToBus("GetId")), &context_);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, &context_,
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
