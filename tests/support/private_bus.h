#pragma once

#include <QDBusConnection>
#include <QString>
#include <QTemporaryDir>

#include <sys/types.h>

#include <vector>

namespace kestro {

/// A private message bus for a test, without activatable services. It ends with the object.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /// A new connection each time, closed with the bus.
    QDBusConnection connect();

    /// Kills the daemon, as a crash would.
    void kill();

    /// Starts the daemon again at the same address.
    void restart();

    const QString& address() const { return address_; }

    /// A connection that never existed.
    static QDBusConnection none() { return QDBusConnection(QStringLiteral("no such bus")); }

private:
    void start();

    QTemporaryDir directory_;
    pid_t daemon_ = -1;
    QString address_;
    std::vector<QString> names_;
};

}  // namespace kestro
