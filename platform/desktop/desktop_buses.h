#pragma once

#include <QDBusConnection>

namespace kestro {

/// The process-wide connections to the message buses, which live as long as the process. A bus that cannot be
/// reached is an unconnected connection.
struct DesktopBuses {
    QDBusConnection session = QDBusConnection::sessionBus();
    QDBusConnection system = QDBusConnection::systemBus();
};

}  // namespace kestro
