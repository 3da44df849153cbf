#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QMetaType>
#include <QObject>
#include <QString>

namespace kestro {

/// Connects a slot with a QDBusVariant among its arguments to a signal on the bus. The binding looks up the types
/// of a slot by name, and refuses the connection unless this one has been registered.
inline bool connectVariantSignal(QDBusConnection bus, const QString& service, const QString& path,
                                 const QString& interface, const QString& member, QObject* receiver,
                                 const char* slot) {
    qRegisterMetaType<QDBusVariant>();
    return bus.connect(service, path, interface, member, receiver, slot);
}

}  // namespace kestro
