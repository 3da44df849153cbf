#pragma once

#include "core/platform/power_assertions.h"
#include "platform/desktop/bus_name_owners.h"
#include "platform/desktop/power_inhibition.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <chrono>
#include <map>
#include <memory>

namespace kestro {

/// Power assertions through whichever service of the desktop can keep the session awake; InhibitionBackend lists
/// them in order of preference. Only services already on the bus are asked: none is started.
///
/// `create` sends its request at once and waits for the reply up to a bound, without running the event loop.
/// Refused, or no service at all: nullopt. No reply in time: the assertion counts as granted, and the revocation
/// handler is called if every service refuses in the end. When the service behind an assertion leaves the bus,
/// the best remaining one is asked; while there is none, the assertion waits. Main thread, after the application
/// object.
class DesktopPowerAssertions final : public QObject, public PowerAssertions {
    Q_OBJECT

public:
    struct Timing {
        /// The longest that `create` blocks.
        std::chrono::milliseconds answerBound = std::chrono::milliseconds(180);
        /// A service that has not replied after this time counts as having refused.
        std::chrono::milliseconds patience = std::chrono::seconds(25);
    };

    DesktopPowerAssertions(const QDBusConnection& sessionBus, const QDBusConnection& systemBus, Timing timing);
    DesktopPowerAssertions(const QDBusConnection& sessionBus, const QDBusConnection& systemBus)
        : DesktopPowerAssertions(sessionBus, systemBus, Timing()) {}

    /// Releases all remaining assertions.
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
