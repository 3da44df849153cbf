#pragma once

#include <chrono>
#include <map>
#include <memory>

#include "core/platform/power_assertions.h"
#include "platform/desktop/bus_name_owners.h"
#include "platform/desktop/power_inhibition.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

namespace kestro {

/// Power assertions through whichever service of the desktop keeps the session awake; InhibitionBackend names
/// them in the order in which they are asked. A service is asked only when it is on the bus: none is started.
///
/// `create` sends its question at once and waits for the answer up to a bound, without running the event loop.
/// Refused, or no service at all: nullopt. No answer in time: the assertion is taken as granted, and the
/// revocation handler tells when every service has refused in the end. An assertion whose service leaves the
/// bus is asked for again, from the best service there is now, and waits while there is none.
/// Main thread, after the application object.
class DesktopPowerAssertions final : public QObject, public PowerAssertions {
    Q_OBJECT

public:
    struct Timing {
        /// The longest that `create` blocks.
        std::chrono::milliseconds answerBound = std::chrono::milliseconds(180);
        /// After this a service that has not answered counts as one that refused.
        std::chrono::milliseconds patience = std::chrono::seconds(25);
    };

    DesktopPowerAssertions(const QDBusConnection& sessionBus, const QDBusConnection& systemBus, Timing timing);
    DesktopPowerAssertions(const QDBusConnection& sessionBus, const QDBusConnection& systemBus)
        : DesktopPowerAssertions(sessionBus, systemBus, Timing()) {}

    /// Releases what is still held.
    ~DesktopPowerAssertions() override;

    std::optional<PowerAssertionID> create(const std::string& type, std::uint32_t level,
                                           const std::string& name) override;
    void release(PowerAssertionID id) override;
    void setRevocationHandler(std::function<void(PowerAssertionID)> handler) override;

private Q_SLOTS:
    void onPortalResponse(const QDBusMessage& signal);

private:
    void ownerChanged(const QString& name);
    void revoke(PowerAssertionID id);

    BusNameOwners sessionOwners_;
    BusNameOwners systemOwners_;
    Timing timing_;
    std::function<void(PowerAssertionID)> revocationHandler_;
    std::map<PowerAssertionID, std::unique_ptr<PowerInhibition>> inhibitions_;
    PowerAssertionID lastID_ = 0;
};

}  // namespace kestro
