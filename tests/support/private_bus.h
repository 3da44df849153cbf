#pragma once

#include <QDBusConnection>
#include <QString>
#include <QTemporaryDir>

#include <sys/types.h>

#include <vector>

namespace kestro {

/// A message bus of the test's own, without any service that could be started on it. Ended with the object.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /// A connection of its own each time, closed with the bus.
    QDBusConnection connect();

    /// Ends the daemon as a crash would.
    void kill();

    const QString& address() const { return address_; }

    /// A connection that was never made.
    static QDBusConnection none() { return QDBusConnection(QStringLiteral("no such bus")); }

private:
    QTemporaryDir directory_;
    pid_t daemon_ = -1;
    QString address_;
    std::vector<QString> names_;
};

}  // namespace kestro
