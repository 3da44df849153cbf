#pragma once

#include "tests/desktop/desktop_session.h"
#include "tests/drills/drill.h"
#include "tests/support/fake_service.h"

#include <QStringList>

#include <map>
#include <memory>
#include <mutex>

namespace kestro::drills {

/// A reply with other types than the caller expects, an error, or two replies, the first of which has been sent on
/// `connection`.
QDBusMessage hostileAnswer(const QDBusMessage& call, const QDBusConnection& connection, DrillRandom& random);

/// A service that answers calls as it should not: with other types, with errors, late, twice or never. It appears
/// and vanishes as the drill asks.
class HostileService {
public:
    HostileService(DesktopSession& session, DesktopSession::Bus bus, const QString& name, std::uint32_t seed);

    /// Vanishes or appears.
    void changeOwner();

    /// Keeps calls, or answers all that were kept.
    void hold(bool isHolding);

    const QDBusConnection& connection() const { return service_->connection(); }
    std::size_t calls() const { return service_->calls().size(); }

private:
    QDBusMessage answer(const QDBusMessage& call);

    std::mutex mutex_;
    DrillRandom random_;
    bool isThere_ = true;
    std::unique_ptr<test::FakeService> service_;  // last: its thread uses the others
};

}  // namespace kestro::drills
