#pragma once

#include "platform/desktop/desktop_power_assertions.h"
#include "tests/platform/desktop/lock_pipe.h"
#include "tests/support/event_waiting.h"
#include "tests/support/fake_service.h"
#include "tests/support/private_bus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <optional>
#include <vector>

namespace kestro::test {

using namespace std::chrono_literals;

inline constexpr auto display = "PreventUserIdleDisplaySleep";
inline constexpr auto systemOnly = "PreventUserIdleSystemSleep";
inline constexpr auto title = "Kestro Keep-Awake Active";
inline constexpr auto requestPath = "/org/freedesktop/portal/desktop/request/1_7/kestro1";

/// Power assertions on a private session bus and system bus, where services appear and vanish.
class DesktopPowerAssertionsTest : public testing::Test {
protected:
    /// A service that grants every request; cookies count from 1.
    std::unique_ptr<FakeService> service(InhibitionBackend backend) {
        auto& bus = isOnSystemBus(backend) ? systemBus : sessionBus;
        auto made = std::make_unique<FakeService>(bus.connect(), serviceName(backend));
        grant(*made, backend);
        return made;
    }

    void grant(FakeService& fake, InhibitionBackend backend) {
        const auto answer = [this, backend](const QDBusMessage& call) {
            if (backend == InhibitionBackend::portal) {
                return call.createReply(QVariant::fromValue(QDBusObjectPath(QLatin1String(requestPath))));
            }
            if (backend == InhibitionBackend::logind) {
                return call.createReply(QVariant::fromValue(pipe.writeEnd()));
            }
            return call.createReply(static_cast<uint>(++lastCookie));
        };
        fake.answer(QStringLiteral("Inhibit"), answer);
        fake.answer(QStringLiteral("AddInhibition"), answer);
    }

    DesktopPowerAssertions& assertions() {
        if (!assertions_) {
            assertions_ = std::make_unique<DesktopPowerAssertions>(session, system, timing);
            assertions_->setRevocationHandler([this](PowerAssertionID id) { revoked.push_back(id); });
        }
        return *assertions_;
    }

    std::optional<PowerAssertionID> create(const char* type = display) {
        return assertions().create(type, 255, title);
    }

    static bool waitForCalls(const FakeService& fake, std::size_t count) {
        return waitUntil([&] { return fake.calls().size() >= count; });
    }

    PrivateBus sessionBus;
    PrivateBus systemBus;
    QDBusConnection session = sessionBus.connect();
    QDBusConnection system = systemBus.connect();
    DesktopPowerAssertions::Timing timing{10s, 20s};
    LockPipe pipe;
    std::atomic<unsigned> lastCookie = 0;
    std::vector<PowerAssertionID> revoked;

private:
    std::unique_ptr<DesktopPowerAssertions> assertions_;

protected:
    void destroyAssertions() { assertions_.reset(); }
};

}  // namespace kestro::test
