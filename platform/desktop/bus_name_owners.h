#pragma once

#include "platform/desktop/bus_link.h"

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace kestro {

/// Tracks which of a few names on one bus are owned, and by which connection, without ever blocking on the bus.
/// Watching starts no service. While the bus is lost, nothing is owned. Main thread.
class BusNameOwners {
public:
    /// Called after the owner of `name` has changed, and with an empty name whenever all owners have become known.
    using Handler = std::function<void(const QString& name)>;

    BusNameOwners(BusLink& link, const QStringList& names, Handler handler);
    BusNameOwners(const BusNameOwners&) = delete;
    BusNameOwners& operator=(const BusNameOwners&) = delete;

    const QDBusConnection& bus() const { return link_.connection(); }

    /// The unique name of the owner's connection; empty: the name has no owner, or it is not known yet.
    QString owner(const QString& name) const;

    /// Whether the bus has reported the owner of every name. Without a bus this is true and nothing is owned.
    bool isKnown() const { return questions_.empty() && refreshes_ == 0; }

    /// To be called when an owner turned out to be gone: the owners are unknown until pending changes have
    /// arrived.
    void refresh();

    /// Processes replies that have arrived but are still queued in the event loop, without running the loop.
    void poll();

private:
    struct Question {
        QString name;
        QDBusPendingCall call;
    };

    /// What belongs to one connection; replies for an older one are dropped with it.
    struct Watch {
        QDBusServiceWatcher watcher;
        QObject context;
    };

    void start();
    void restart();
    void setOwner(const QString& name, const QString& owner);

    BusLink& link_;
    const QStringList names_;
    Handler handler_;
    std::map<QString, QString> owners_;
    std::vector<Question> questions_;
    int refreshes_ = 0;  // under way
    std::unique_ptr<Watch> watch_;
    QObject context_;
};

}  // namespace kestro
