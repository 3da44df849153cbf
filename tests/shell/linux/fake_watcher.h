#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

namespace kestro {

/// A panel's side of the protocol: org.kde.StatusNotifierWatcher with one host. It records every registration
/// and every signal of the items.
class FakeWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ registered)

public:
    /// Acquires the watcher's name on `connection`.
    explicit FakeWatcher(const QDBusConnection& connection, bool hasHost = true);
    ~FakeWatcher() override;

    bool hasHost() const { return hasHost_; }
    int protocolVersion() const { return 0; }
    QStringList registered() const { return registrations; }

    /// A host appears or disappears.
    void setHost(bool hasHost);

    QStringList registrations;  ///< the argument of each registration, in order
    QStringList announcements;  ///< the name of each signal of an item, in order

public Q_SLOTS:
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString& service);
    Q_SCRIPTABLE void RegisterStatusNotifierHost(const QString& service);
    void onSignal(const QDBusMessage& message);

Q_SIGNALS:
    Q_SCRIPTABLE void StatusNotifierItemRegistered(const QString& service);
    Q_SCRIPTABLE void StatusNotifierHostRegistered();
    Q_SCRIPTABLE void StatusNotifierHostUnregistered();

private:
    QDBusConnection connection_;
    bool hasHost_;
};

}  // namespace kestro
