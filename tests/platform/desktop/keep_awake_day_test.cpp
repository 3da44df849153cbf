#include "core/power/keep_awake_manager.h"
#include "core/settings/user_settings.h"
#include "platform/desktop/desktop_power_assertions.h"
#include "tests/platform/desktop/scripted_lock_services.h"
#include "tests/platform/desktop/simulated_platform.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <string>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using test::ScriptedLockServices;
using enum LockMechanism;
using ReportState = PowerAssertionReport::State;

/// What can happen to keep-awake in the course of a day. A request that meets no decision yet is answered late.
enum class Event { restart, grant, refusal, ownerLost, ownerBack, suspend, sessionLock };

constexpr std::array allEvents{Event::restart,   Event::grant,   Event::refusal,    Event::ownerLost,
                               Event::ownerBack, Event::suspend, Event::sessionLock};

constexpr auto systemOnly = KeepAwakeTarget::systemOnly;

constexpr std::array mechanisms{gnomeSessionManager, screenSaver, logindIdle, logindSleep, x11ScreenSaver};

/// One day: the manager above the real lock sets, above a scripted desktop.
class Day {
public:
    Day() {
        services.appear(gnomeSessionManager);
        services.appear(logindIdle);
        services.appear(logindSleep);
        services.appear(x11ScreenSaver);
    }

    void happen(Event event) {
        using Reply = ScriptedLockServices::Reply;
        switch (event) {
            case Event::restart:
                services.reply = Reply::late;
                manager.activate(KeepAwakeDuration::indefinite, manager.targetMode.get() == systemOnly
                                                                    ? KeepAwakeTarget::displayAndSystem
                                                                    : systemOnly);
                break;
            case Event::grant:
                services.reply = Reply::grant;
                services.answerOpenRequests(true);
                break;
            case Event::refusal:
                services.reply = Reply::refuse;
                services.answerOpenRequests(false);
                break;
            case Event::ownerLost:
                services.vanish(gnomeSessionManager);
                services.vanish(logindIdle);
                services.vanish(logindSleep);
                break;
            case Event::ownerBack:
                services.appear(gnomeSessionManager);
                services.appear(logindIdle);
                services.appear(logindSleep);
                break;
            case Event::suspend:
                mac.advance(1h);
                services.resume();
                break;
            case Event::sessionLock:
                // The screen saver's service starts with the first lock.
                services.appear(screenSaver);
                services.vanish(screenSaver);
                services.appear(screenSaver);
                break;
        }
        QCoreApplication::processEvents();
    }

    /// At most one set is held, none without a wish, and the report is the truth.
    void expectOneSet() {
        for (const auto mechanism : mechanisms) {
            EXPECT_LE(services.held(mechanism), 1) << holderName(mechanism, {});
        }
        if (!manager.isActive.get()) {
            EXPECT_EQ(services.held(), 0);
            EXPECT_EQ(services.wanted(), 0);
        }
        EXPECT_EQ(assertions.report().state == ReportState::held, services.held() > 0);
    }

    void expectNothingLeft() {
        EXPECT_EQ(services.wanted(), 0);
        services.answerOpenRequests(true);
        QCoreApplication::processEvents();
        EXPECT_EQ(services.held(), 0);
        EXPECT_FALSE(manager.isActive.get());
    }

    ScriptedLockServices services;
    DesktopPowerAssertions assertions{services, {}, 0ms};
    SimulatedMac mac;
    const Platform platform = test::platformWith(mac, assertions);
    UserSettings settings{mac.userDefaults};
    KeepAwakeManager manager{platform, settings};
};

TEST(KeepAwakeDay, HoldsAtMostOneSetInEveryOrderOfEvents) {
    auto order = allEvents;
    int orders = 0;
    do {
        Day day;
        day.services.reply = ScriptedLockServices::Reply::late;
        day.manager.activate(KeepAwakeDuration::indefinite);
        for (const Event event : order) {
            day.happen(event);
            day.expectOneSet();
            day.mac.advance(3h);
        }
        day.manager.deactivate();
        day.expectNothingLeft();
        ++orders;
    } while (std::ranges::next_permutation(order).found && !testing::Test::HasFailure());

    EXPECT_EQ(orders, 5040);
}

TEST(KeepAwakeDay, TimedPeriodsEndAndLeaveNothingBehind) {
    for (const Event first : allEvents) {
        for (const Event second : allEvents) {
            if (first == Event::restart || second == Event::restart) {
                continue;  // it starts a period without an end
            }
            Day day;
            for (int period = 0; period < 6; ++period) {
                day.manager.activate(KeepAwakeDuration::hours4);
                day.happen(first);
                day.expectOneSet();
                day.mac.advance(1h);
                day.happen(second);
                day.expectOneSet();
                day.mac.advance(3h);
                EXPECT_FALSE(day.manager.isActive.get());
                day.expectOneSet();
                EXPECT_EQ(day.services.wanted(), 0);
            }
            day.expectNothingLeft();
        }
    }
}

TEST(KeepAwakeDay, ALockThatIsLostIsTakenAgainWhenItsServiceReturns) {
    Day day;
    day.manager.activate(KeepAwakeDuration::indefinite);
    day.services.vanish(x11ScreenSaver);
    ASSERT_GT(day.services.held(), 0);

    day.happen(Event::ownerLost);
    EXPECT_EQ(day.assertions.report().state, ReportState::lost);
    EXPECT_TRUE(day.manager.isActive.get());
    day.happen(Event::ownerBack);

    EXPECT_EQ(day.assertions.report().state, ReportState::held);
}

TEST(KeepAwakeDay, ThereIsNoGapWhenABetterServiceTakesOver) {
    Day day;
    day.services.vanish(gnomeSessionManager);
    day.services.vanish(x11ScreenSaver);
    day.manager.activate(KeepAwakeDuration::indefinite);
    ASSERT_EQ(day.services.held(logindSleep), 1);

    day.services.reply = ScriptedLockServices::Reply::late;
    day.services.appear(gnomeSessionManager);
    EXPECT_EQ(day.services.held(logindSleep), 1);
    day.services.answerOpenRequests(true);

    EXPECT_EQ(day.services.held(gnomeSessionManager), 1);
    EXPECT_EQ(day.services.held(logindSleep), 0);
}

}  // namespace
}  // namespace kestro
