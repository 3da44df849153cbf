#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>

namespace kestro {

/// A connection to a message bus. Reconnects after the bus was lost, with growing pauses between the attempts, but
/// does not wait for a bus that was never there unless asked to. Main thread; outlives its users.
class BusLink final : public QObject {
    Q_OBJECT

public:
    /// Makes a new connection under a new name. It may fail.
    using Connect = std::function<QDBusConnection()>;

    BusLink(const QDBusConnection& connection, Connect reconnect,
            std::chrono::milliseconds firstPause = std::chrono::seconds(1));

    const QDBusConnection& connection() const { return connection_; }
    bool isConnected() const { return connection_.isConnected(); }

    /// Connects to a bus that has not answered yet, first after `pause`, then after growing ones.
    void connectLater(std::chrono::milliseconds pause);

Q_SIGNALS:
    /// The bus was lost, or a new connection was made.
    void changed();

private Q_SLOTS:
    void onDisconnected();

private:
    void follow();
    void tryAgain();

    QDBusConnection connection_;
    Connect reconnect_;
    std::chrono::milliseconds firstPause_;
    std::chrono::milliseconds pause_;
    QTimer retry_;
};

}  // namespace kestro
