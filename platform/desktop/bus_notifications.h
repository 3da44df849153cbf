#pragma once

#include "core/base/announcer.h"
#include "core/base/request_queue.h"
#include "core/platform/distributed_notifications.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QTimer>

#include <map>
#include <memory>
#include <string>

namespace kestro {

/// The user's notification centre on the session bus: the notification "kestro.notify.showSettings" is the
/// signal `showSettings` of the interface `kestro.notify` at the object path /kestro/notify, with the user info,
/// if any, as one argument of type a{sv}. A shell posts one with
///
///     gdbus emit --session --object-path /kestro/notify --signal kestro.notify.togglePopover
///
/// or, with user info, with
///
///     busctl --user emit /kestro/notify kestro.notify showSettings 'a{sv}' 1 tab s Keep-Awake
///
/// Signals from any sender are accepted, including this process. Nothing in them is trusted: an argument of
/// another type or with more than 64 entries counts as no user info, a value other than a boolean, a number or a
/// text of at most 4096 bytes becomes an empty value, and entries with keys above 256 bytes are dropped.
///
/// Notifications are delivered one in each turn of the event loop. One that equals a waiting one is dropped, and
/// so is any that finds 64 waiting: a flood neither blocks the main thread nor uses memory.
///
/// Without a bus, a notification still reaches the observers in this process, from the event loop, so that the
/// parts of the program can communicate on a bare display too. Main thread.
class BusNotifications final : public QObject, public DistributedNotifications {
    Q_OBJECT

public:
    explicit BusNotifications(const QDBusConnection& sessionBus);
    ~BusNotifications() override = default;

    Subscription observe(std::string_view name, Handler handler) override;
    void post(std::string_view name, const NotificationUserInfo& userInfo = {}) override;

private Q_SLOTS:
    void onSignal(const QDBusMessage& message);

private:
    using Observers = Announcer<const NotificationUserInfo&>;

    struct Notification {
        std::string name;
        NotificationUserInfo userInfo;
        friend bool operator==(const Notification&, const Notification&) = default;
    };

    void queue(Notification notification);
    void deliverNext();

    QDBusConnection bus_;
    std::map<std::string, std::unique_ptr<Observers>, std::less<>> observers_;
    RequestQueue<Notification> waiting_;
    QTimer turn_;
};

/// Reads the user info of a signal, with the limits above.
NotificationUserInfo notificationUserInfo(const QDBusMessage& signal);

}  // namespace kestro
