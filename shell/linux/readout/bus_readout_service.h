#pragma once

#include "shell/linux/notifier/action_queue.h"
#include "shell/linux/notifier/bus_object.h"
#include "shell/linux/notifier/menu_object.h"
#include "shell/linux/readout/readout_clients.h"
#include "shell/readout_service.h"

#include <QDBusConnection>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace kestro {

/// Offers the readout as kestro.Readout at /kestro/Readout on the session bus, under a name of its own; see
/// docs/bus.md. Without a bus it does nothing.
///
/// The values are computed when a program reads them and, while programs follow the readout, once per update.
/// PropertiesChanged is sent only to these, each time with what has changed. Requests run from the event loop,
/// after the caller has its reply, one in each turn; requests of one method that arrive together count once, with
/// the arguments of the last. Main thread.
class BusReadoutService final : public ReadoutService {
public:
    static constexpr char busName[] = "kestro.Readout";
    static constexpr char objectPath[] = "/kestro/Readout";

    /// `onHosted` receives whether a panel shows the readout, each time this changes while published.
    BusReadoutService(const QDBusConnection& bus, std::function<void(bool isHosted)> onHosted);
    ~BusReadoutService() override;
    BusReadoutService(const BusReadoutService&) = delete;
    BusReadoutService& operator=(const BusReadoutService&) = delete;

    void publish(ReadoutHandlers handlers) override;
    void withdraw() override;
    void readoutDidUpdate() override;

private:
    enum class Request { togglePopover, showDashboard, showSettings, toggleKeepAwake, followHosts };

    void addProperties();
    void addMethods();
    void addRequests();
    BusReply follow(const QVariantList& arguments, const QString& caller);
    BusReply unfollow(const QString& caller);
    BusReply setHost(const QString& caller, bool isHost);
    BusReply togglePopover(const QVariantList& arguments);
    BusReply showSettings(const QVariantList& arguments);
    void request(Request kind, std::function<void()> action);
    void followHosts();
    bool isFollowed(const QString& figure) const;
    QVariantMap currentValues() const;

    QDBusConnection bus_;
    const std::function<void(bool)> onHosted_;
    ReadoutHandlers handlers_;
    ReadoutClients clients_;
    ActionQueue requests_;
    BusObject object_;
    std::optional<MenuObject> menu_;  // while published

    // What the followers know: of figures, those that any of them follows.
    QVariantMap known_;
    bool isHosted_ = false;
};

}  // namespace kestro
