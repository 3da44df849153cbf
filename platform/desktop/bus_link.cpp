#include "platform/desktop/bus_link.h"

#include <algorithm>
#include <utility>

namespace kestro {

namespace {

constexpr std::chrono::milliseconds longestPause = std::chrono::seconds(30);

}  // namespace

BusLink::BusLink(const QDBusConnection& connection, Connect reconnect, std::chrono::milliseconds firstPause)
    : connection_(connection), reconnect_(std::move(reconnect)), firstPause_(firstPause), pause_(firstPause) {
    retry_.setSingleShot(true);
    connect(&retry_, &QTimer::timeout, this, &BusLink::tryAgain);
    if (connection_.isConnected()) {
        follow();
    }
}

void BusLink::connectLater(std::chrono::milliseconds pause) {
    pause_ = pause;
    retry_.start(pause_);
}

void BusLink::follow() {
    // The protocol library sends this signal to itself when the other end has closed.
    connection_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                        QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                        SLOT(onDisconnected()));
}

void BusLink::onDisconnected() {
    connectLater(firstPause_);
    Q_EMIT changed();
}

void BusLink::tryAgain() {
    QDBusConnection fresh = reconnect_();
    if (!fresh.isConnected()) {
        QDBusConnection::disconnectFromBus(fresh.name());
        pause_ = std::min(2 * pause_, longestPause);
        retry_.start(pause_);
        return;
    }
    connection_ = fresh;
    follow();
    Q_EMIT changed();
}

}  // namespace kestro
