#pragma once

#include "shell/linux/notifier/presentation.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <functional>

namespace kestro {

/// Where to look for a host of status items.
struct NotifierEnvironment {
    /// Address of the bus; empty: the session bus.
    QString busAddress;

    /// The entries of XDG_CURRENT_DESKTOP.
    QStringList desktops;

    /// Name of a process as the kernel reports it, at most 15 characters; empty when it cannot be read.
    std::function<QString(uint pid)> processName;

    /// A watcher that has not replied after this time counts as absent.
    std::chrono::milliseconds patience = std::chrono::seconds(25);

    /// The pause before such a watcher is asked again.
    std::chrono::milliseconds retryPause = std::chrono::seconds(5);

    /// This process's environment.
    static NotifierEnvironment current();

    /// Opens a private connection to the bus under `name`.
    QDBusConnection connect(const QString& name) const;
};

/// Follows org.kde.StatusNotifierWatcher on the bus: whether there is one, whether it has a host, and what that
/// host does with labels. Queries are asynchronous; the state is `unknown` until the first reply. The cost of a
/// misbehaving watcher is bounded: at most one question to it is open. Main thread.
class HostMonitor : public QObject {
    Q_OBJECT

public:
    enum class State { unknown, absent, present };

    explicit HostMonitor(NotifierEnvironment environment);
    ~HostMonitor() override;

    static QString watcherService() { return QStringLiteral("org.kde.StatusNotifierWatcher"); }
    static QString watcherPath() { return QStringLiteral("/StatusNotifierWatcher"); }

    State state() const { return state_; }

    /// What the current host does with labels.
    LabelSupport labels() const { return labels_; }

    /// Name of the process that owns the watcher; empty while unknown.
    const QString& hostProcess() const { return hostProcess_; }

    /// The monitor's connection, for other code that only sends queries and listens.
    const QDBusConnection& connection() const { return connection_; }

    const NotifierEnvironment& environment() const { return environment_; }

Q_SIGNALS:
    void stateChanged();

    /// A watcher or a host has appeared: items must register (again). At most once in a turn of the event loop.
    void hostArrived();

    /// `labels` or `hostProcess` changed.
    void hostIdentified();

private Q_SLOTS:
    void askForHost();
    void onHostRegistered();
    void onDisconnected();

private:
    void onOwnerChanged(const QString& owner);
    void setOwner(const QString& owner);
    void announceArrival();
    void answered(const QDBusMessage& reply);
    void identify(const QString& owner);
    void setState(State state);
    void setHostProcess(const QString& process);

    NotifierEnvironment environment_;
    QDBusConnection connection_;
    QDBusServiceWatcher serviceWatcher_;
    State state_ = State::unknown;
    QString owner_;
    QString hostProcess_;
    LabelSupport labels_ = LabelSupport::hidden;
    std::uint64_t question_ = 0;  ///< counts the questions to watchers; only the reply to the last one is used
    bool isAsking_ = false;
    bool asksAgain_ = false;
    QTimer retry_;
    QTimer arrival_;
};

}  // namespace kestro
