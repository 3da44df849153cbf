#pragma once

#include "tests/support/event_waiting.h"
#include "tests/support/private_bus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariantList>

namespace kestro {

/// A private connection to a bus.
class BusClient {
public:
    explicit BusClient(const QString& address);
    ~BusClient();
    BusClient(const BusClient&) = delete;
    BusClient& operator=(const BusClient&) = delete;

    QDBusConnection& connection() { return connection_; }

    /// Calls a method and runs the event loop until the reply arrives; an invalid message without a reply.
    QDBusMessage call(const QString& service, const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments = {});

    /// The value of a property; invalid when it cannot be read.
    QVariant property(const QString& service, const QString& path, const QString& interface, const QString& name);

private:
    QDBusConnection connection_;
};

}  // namespace kestro
