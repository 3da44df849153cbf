#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <QVariantList>
#include <functional>

namespace kestro {

/// Runs the event loop until `condition` holds; false when that takes more than ten seconds.
bool waitUntil(const std::function<bool()>& condition);

/// A message bus of the test's own, without any service, ended with this object.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();

    const QString& address() const { return address_; }

    /// Ends the bus now, as a crash would.
    void kill();

private:
    QTemporaryDir folder_;
    QProcess daemon_;
    QString address_;
};

/// A connection of its own to a bus.
class BusClient {
public:
    explicit BusClient(const QString& address);
    ~BusClient();
    BusClient(const BusClient&) = delete;
    BusClient& operator=(const BusClient&) = delete;

    QDBusConnection& connection() { return connection_; }

    /// Calls and runs the event loop until the answer is there; an invalid message when none comes.
    QDBusMessage call(const QString& service, const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments = {});

    /// The value of a property; invalid when it cannot be read.
    QVariant property(const QString& service, const QString& path, const QString& interface, const QString& name);

private:
    QDBusConnection connection_;
};

}  // namespace kestro
