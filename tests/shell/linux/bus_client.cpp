#include "tests/shell/linux/bus_client.h"

#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

namespace kestro {

namespace {

QString nextConnectionName() {
    static int count = 0;
    return QStringLiteral("test-client-%1").arg(++count);
}

}  // namespace

BusClient::BusClient(const QString& address)
    : connection_(QDBusConnection::connectToBus(address, nextConnectionName())) {}

BusClient::~BusClient() {
    QDBusConnection::disconnectFromBus(connection_.name());
}

QDBusMessage BusClient::call(const QString& service, const QString& path, const QString& interface,
                             const QString& method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    // Only a watcher's signal wakes the event loop when the reply arrives.
    const QDBusPendingCallWatcher pending(connection_.asyncCall(message));
    waitUntil([&] { return pending.isFinished(); });
    return pending.reply();
}

QVariant BusClient::property(const QString& service, const QString& path, const QString& interface,
                             const QString& name) {
    const QDBusMessage reply = call(service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                    QStringLiteral("Get"), {interface, name});
    if (reply.type() != QDBusMessage::ReplyMessage) {
        return {};
    }
    return reply.arguments().at(0).value<QDBusVariant>().variant();
}

}  // namespace kestro
