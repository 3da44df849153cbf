#pragma once

#include "fuzz/stand_in_bus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QGuiApplication>
#include <QVariantList>

#include <memory>

namespace kestro {

/// Connections that call their own objects. The bus binding delivers such calls and their replies within the
/// process, but encodes and decodes them as messages of another process. Messages whose arguments are all simple
/// values are passed on unencoded, which makes no difference. Main thread; the only one of the process.
class BusLoopback {
public:
    static BusLoopback& shared();

    /// A connection for objects.
    const QDBusConnection& connection() const { return connection_; }

    /// For further connections, in the form of DBUS_SESSION_BUS_ADDRESS.
    QString busAddress() const { return QString::fromStdString(bus_.address()); }

    /// Calls an object of the connection and returns the reply as received.
    static QDBusMessage call(const QDBusConnection& connection, const QString& path, const QString& interface,
                             const QString& method, const QVariantList& arguments);

    /// A reply with the arguments as received; an error if they cannot be sent.
    QDBusMessage receive(const QVariantList& arguments);

    /// Runs everything that waits for a turn of the event loop.
    static void handleEvents();

private:
    BusLoopback();
    ~BusLoopback();

    class Sender;

    std::unique_ptr<QGuiApplication> application_;
    StandInBus bus_;
    QDBusConnection connection_;
    std::unique_ptr<Sender> sender_;
};

}  // namespace kestro
