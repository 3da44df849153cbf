#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QSet>
#include <QString>

#include <functional>
#include <map>

namespace kestro {

/// The programs that follow the readout or show it in a panel, by the unique names of their connections. One that
/// leaves the bus is dropped, and with the bus all of them. Main thread.
class ReadoutClients : public QObject {
    Q_OBJECT

public:
    /// More than all panels of a session. Further programs are refused.
    static constexpr std::size_t limit = 32;

    struct Client {
        bool isFollowing = false;
        QSet<QString> figures;  ///< those that it follows
        bool isHost = false;
    };

    /// `onChange` is called after programs were dropped.
    ReadoutClients(const QDBusConnection& bus, std::function<void()> onChange);

    /// The entry of a program, new if necessary; null: there are too many.
    Client* add(const QString& name);

    /// Drops the program if it neither follows nor hosts the readout.
    void tidy(const QString& name);

    const std::map<QString, Client>& all() const { return clients_; }
    bool isFollowed() const;
    bool isHosted() const;

    /// Drops all of them, without a call of `onChange`.
    void clear();

private Q_SLOTS:
    void onDisconnected();

private:
    void drop(const QString& name);

    QDBusConnection bus_;
    const std::function<void()> onChange_;
    QDBusServiceWatcher watcher_;
    std::map<QString, Client> clients_;
};

}  // namespace kestro
