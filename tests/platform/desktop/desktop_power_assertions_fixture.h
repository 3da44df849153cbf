#pragma once

#include "platform/desktop/bus_lock_services.h"
#include "platform/desktop/desktop_power_assertions.h"
#include "tests/platform/desktop/lock_pipe.h"
#include "tests/support/event_waiting.h"
#include "tests/support/fake_service.h"
#include "tests/support/private_bus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestro::test {

using namespace std::chrono_literals;
using enum LockMechanism;
using ReportState = PowerAssertionReport::State;

inline constexpr auto display = "PreventUserIdleDisplaySleep";
inline constexpr auto systemOnly = "PreventUserIdleSystemSleep";
inline constexpr auto title = "Kestro Keep-Awake Active";

/// The portal's request with this number, counted from 1.
inline QString requestPath(unsigned number) {
    return QStringLiteral("/org/freedesktop/portal/desktop/request/1_7/kestro%1").arg(number);
}

/// Power assertions on a private session bus and system bus, where services appear and vanish.
class DesktopPowerAssertionsTest : public testing::Test {
protected:
    /// A service that grants every request; cookies count from 1. Questions get an empty reply, as from a service
    /// that does not know them.
    std::unique_ptr<FakeService> service(LockMechanism mechanism) {
        auto& bus = isOnSystemBus(mechanism) ? systemBus : sessionBus;
        auto made = std::make_unique<FakeService>(bus.connect(), serviceName(mechanism));
        grant(*made, mechanism);
        return made;
    }

    void grant(FakeService& fake, LockMechanism mechanism) {
        const auto answer = [this, mechanism](const QDBusMessage& call) {
            if (isPortal(mechanism)) {
                return call.createReply(QVariant::fromValue(QDBusObjectPath(requestPath(++lastCookie))));
            }
            if (isOnSystemBus(mechanism)) {
                return call.createReply(QVariant::fromValue(pipe.writeEnd()));
            }
            return call.createReply(static_cast<uint>(++lastCookie));
        };
        fake.answer(QStringLiteral("Inhibit"), answer);
        fake.answer(QStringLiteral("AddInhibition"), answer);
    }

    DesktopPowerAssertions& assertions() {
        if (!assertions_) {
            services_ = std::make_unique<BusLockServices>(sessionLink, systemLink, options);
            assertions_ = std::make_unique<DesktopPowerAssertions>(*services_, desktop, bound);
            assertions_->setRevocationHandler([this](PowerAssertionID id) { revoked.push_back(id); });
        }
        return *assertions_;
    }

    std::optional<PowerAssertionID> create(const char* type = display) {
        return assertions().create(type, 255, title);
    }

    std::vector<std::string> holders() { return assertions().report().holders; }

    bool isReported(ReportState state) {
        return waitUntil([&] { return assertions().report().state == state; });
    }

    /// The calls that acquire or release, without the questions in between.
    static std::vector<std::string> locking(const FakeService& fake) {
        auto calls = fake.calls();
        std::erase_if(calls, [](const std::string& call) {
            return call.starts_with("IsInhibited") || call.starts_with("HasInhibit") ||
                   call.starts_with("ListInhibitors");
        });
        return calls;
    }

    static bool waitForLocking(const FakeService& fake, std::size_t count) {
        return waitUntil([&] { return locking(fake).size() >= count; });
    }

    void destroyAssertions() {
        assertions_.reset();
        services_.reset();
    }

    PrivateBus sessionBus;
    PrivateBus systemBus;
    QDBusConnection session = sessionBus.connect();
    QDBusConnection system = systemBus.connect();
    BusLink sessionLink{session, [this] { return reconnect(sessionBus); }, 5ms};
    BusLink systemLink{system, [this] { return reconnect(systemBus); }, 5ms};
    BusLockServices::Options options{.timing = {20s, 20s}};
    QString desktop;
    std::chrono::milliseconds bound = 10s;
    LockPipe pipe;
    std::atomic<unsigned> lastCookie = 0;
    std::vector<PowerAssertionID> revoked;

private:
    static QDBusConnection reconnect(PrivateBus& bus) {
        static int count = 0;
        return QDBusConnection::connectToBus(bus.address(), QStringLiteral("reconnected-%1").arg(++count));
    }

    std::unique_ptr<BusLockServices> services_;
    std::unique_ptr<DesktopPowerAssertions> assertions_;
};

}  // namespace kestro::test
