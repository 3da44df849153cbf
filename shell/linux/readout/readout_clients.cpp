#include "shell/linux/readout/readout_clients.h"

#include "shell/linux/when_answered.h"

#include <algorithm>
#include <utility>

namespace kestro {

ReadoutClients::ReadoutClients(const QDBusConnection& bus, std::function<void()> onChange)
    : bus_(bus), onChange_(std::move(onChange)) {
    watcher_.setConnection(bus_);
    watcher_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&watcher_, &QDBusServiceWatcher::serviceUnregistered, this, &ReadoutClients::drop);
    bus_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                 QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                 SLOT(onDisconnected()));
}

ReadoutClients::Client* ReadoutClients::add(const QString& name) {
    const auto known = clients_.find(name);
    if (known != clients_.end()) {
        return &known->second;
    }
    if (clients_.size() >= limit) {
        return nullptr;
    }
    watcher_.addWatchedService(name);
    // It may have left before the bus handled the request to watch it.
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    question << name;
    whenAnswered(bus_.asyncCall(question), this, [this, name](const QDBusMessage& reply) {
        if (isReply(reply, QLatin1StringView("b")) && !reply.arguments().constFirst().toBool()) {
            drop(name);
        }
    });
    return &clients_[name];
}

void ReadoutClients::tidy(const QString& name) {
    const auto found = clients_.find(name);
    if (found != clients_.end() && !found->second.isFollowing && !found->second.isHost) {
        clients_.erase(found);
        watcher_.removeWatchedService(name);
    }
}

bool ReadoutClients::isFollowed() const {
    return std::ranges::any_of(clients_, [](const auto& entry) { return entry.second.isFollowing; });
}

bool ReadoutClients::isHosted() const {
    return std::ranges::any_of(clients_, [](const auto& entry) { return entry.second.isHost; });
}

void ReadoutClients::clear() {
    clients_.clear();
    watcher_.setWatchedServices({});
}

void ReadoutClients::onDisconnected() {
    if (!clients_.empty()) {
        clear();
        onChange_();
    }
}

void ReadoutClients::drop(const QString& name) {
    if (clients_.erase(name) > 0) {
        watcher_.removeWatchedService(name);
        onChange_();
    }
}

}  // namespace kestro
