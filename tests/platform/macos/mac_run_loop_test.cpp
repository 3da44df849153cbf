#include "platform/macos/mac_run_loop.h"

#include "platform/macos/mac_clock.h"
#include "tests/platform/macos/failing_calls.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <IOKit/IOMessage.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using fakes::FakeMac;
using testing::ElementsAre;
using testing::IsEmpty;

struct Loop {
    FakeMac mac;
    MacClock clock;
    MacRunLoop runLoop{clock};

    void advance(std::chrono::nanoseconds duration) { mac.runLoop.advance(duration); }
    fakes::FakeRunLoop::Timer& timer() { return mac.runLoop.timers.front(); }
};

TEST(MacRunLoop, FiresTimersOfDifferentPeriodsInOneWakeUp) {
    Loop loop;
    int fast = 0;
    int slow = 0;
    const auto slowTimer = loop.runLoop.scheduleRepeating(2000ms, [&] { ++slow; });
    const auto fastTimer = loop.runLoop.scheduleRepeating(1000ms, [&] { ++fast; });

    loop.advance(20s + 1ms);

    EXPECT_EQ(fast, 20);
    EXPECT_EQ(slow, 10);
    EXPECT_EQ(loop.timer().firings, 20);
    EXPECT_EQ(loop.mac.runLoop.timers.size(), 1U);
}

TEST(MacRunLoop, LetsTheSystemDelayATimerByATenth) {
    Loop loop;
    const auto slow = loop.runLoop.scheduleRepeating(5000ms, [] {});
    EXPECT_DOUBLE_EQ(loop.timer().tolerance, 0.5);

    const auto fast = loop.runLoop.scheduleRepeating(500ms, [] {});

    EXPECT_DOUBLE_EQ(loop.timer().tolerance, 0.05);
}

TEST(MacRunLoop, SleepsWithNothingScheduled) {
    Loop loop;
    {
        const auto timer = loop.runLoop.scheduleRepeating(1000ms, [] {});
        loop.advance(5s);
    }
    const auto firings = loop.timer().firings;

    loop.advance(std::chrono::hours(1000));

    EXPECT_EQ(loop.timer().firings, firings);
}

TEST(MacRunLoop, RunsTheOldestOfTimersDueTogetherFirst) {
    Loop loop;
    std::vector<std::string> order;
    const auto first = loop.runLoop.scheduleRepeating(3000ms, [&] { order.emplace_back("first"); });
    const auto second = loop.runLoop.scheduleRepeating(1000ms, [&] { order.emplace_back("second"); });
    const auto third = loop.runLoop.scheduleRepeating(3000ms, [&] { order.emplace_back("third"); });
    loop.advance(5900ms);
    order.clear();

    loop.advance(200ms);

    EXPECT_THAT(order, ElementsAre("first", "second", "third"));
}

TEST(MacRunLoop, DropsFiringsThatABusyThreadMissed) {
    Loop loop;
    int firings = 0;
    const auto timer = loop.runLoop.scheduleRepeating(1000ms, [&] { ++firings; });
    loop.advance(3s);
    firings = 0;

    fakes::FakeRunLoop::stall(10'200ms);
    loop.advance(0s);
    EXPECT_EQ(firings, 1);
    loop.advance(1s);

    EXPECT_EQ(firings, 2);
}

TEST(MacRunLoop, FiresOtherTimersInANestedEventLoopOfATask) {
    Loop loop;
    int inner = 0;
    int outer = 0;
    bool isNested = false;
    const auto menu = loop.runLoop.scheduleRepeating(10'000ms, [&] {
        ++outer;
        if (!isNested) {
            isNested = true;
            const int before = inner;
            loop.advance(30s);
            EXPECT_GE(inner - before, 29) << "the system's timer fires again before the task returns";
            EXPECT_EQ(outer, 1) << "the timer whose task runs does not";
        }
    });
    const auto others = loop.runLoop.scheduleRepeating(1000ms, [&] { ++inner; });

    loop.advance(20s);

    EXPECT_TRUE(isNested);
}

TEST(MacRunLoop, RunsPostedTasksInOrderAndThoseOfANestedLoopOnce) {
    Loop loop;
    std::vector<int> order;
    loop.runLoop.post([&] {
        order.push_back(1);
        loop.mac.runLoop.runPending();
        order.push_back(4);
    });
    loop.runLoop.post([&] { order.push_back(2); });
    loop.runLoop.post([&] { order.push_back(3); });

    loop.mac.runLoop.runPending();

    EXPECT_THAT(order, ElementsAre(1, 2, 3, 4));
}

TEST(MacRunLoop, LetsOtherEventsInBetweenTasksThatPostEachOther) {
    Loop loop;
    int posted = 0;
    std::function<void()> again = [&] {
        if (++posted < 100) {
            loop.runLoop.post(again);
        }
    };
    loop.runLoop.post(again);
    const auto wakeUps = loop.mac.runLoop.wakeUps;

    loop.mac.runLoop.runPending();

    EXPECT_EQ(posted, 100);
    EXPECT_EQ(loop.mac.runLoop.wakeUps - wakeUps, 99) << "each went through the run loop";
}

TEST(MacRunLoop, RunsBackgroundTasksOffTheMainThreadAtTheirPriority) {
    Loop loop;
    std::thread::id thread;
    int results = 0;
    loop.runLoop.runInBackground(TaskPriority::utility, [&] {
        thread = std::this_thread::get_id();
        loop.runLoop.post([&] { ++results; });
    });
    loop.runLoop.runInBackground(TaskPriority::userInitiated, [] {});

    EXPECT_EQ(loop.mac.dispatch.work[0].quality, QOS_CLASS_UTILITY);
    EXPECT_EQ(loop.mac.dispatch.work[1].quality, QOS_CLASS_USER_INITIATED);
    loop.mac.dispatch.runWork();
    EXPECT_EQ(results, 0);
    loop.mac.runLoop.runPending();

    EXPECT_EQ(results, 1);
    EXPECT_NE(thread, std::this_thread::get_id());
    loop.runLoop.finishBackgroundTasks(1s);
}

TEST(MacRunLoop, DropsBackgroundTasksThatHaveNotStartedAtTheEnd) {
    Loop loop;
    int runs = 0;
    const auto witness = std::make_shared<int>(0);
    loop.runLoop.runInBackground(TaskPriority::utility, [&runs, witness] { ++runs; });

    EXPECT_TRUE(loop.runLoop.finishBackgroundTasks(1s));

    EXPECT_EQ(runs, 0);
    EXPECT_EQ(witness.use_count(), 1);
}

TEST(MacRunLoop, ReportsBackgroundTasksThatDoNotFinish) {
    Loop loop;
    loop.mac.dispatch.hangs = true;
    loop.runLoop.runInBackground(TaskPriority::utility, [] {});

    EXPECT_FALSE(loop.runLoop.finishBackgroundTasks(1s));
}

TEST(MacRunLoop, FiresEveryTimerOnceAfterWakingUp) {
    Loop loop;
    int fast = 0;
    int slow = 0;
    const auto fastTimer = loop.runLoop.scheduleRepeating(1000ms, [&] { ++fast; });
    const auto slowTimer = loop.runLoop.scheduleRepeating(5000ms, [&] { ++slow; });
    loop.advance(200ms);

    loop.mac.ioKit.sendPowerMessage(kIOMessageSystemHasPoweredOn);
    loop.mac.runLoop.runPending();

    EXPECT_EQ(fast, 1);
    EXPECT_EQ(slow, 1);
    loop.advance(400ms);
    EXPECT_EQ(fast, 1) << "the next firing is at least half a period later";
}

TEST(MacRunLoop, ConsentsToEverySleep) {
    Loop loop;

    loop.mac.ioKit.sendPowerMessage(kIOMessageCanSystemSleep, 17);
    loop.mac.ioKit.sendPowerMessage(kIOMessageSystemWillSleep, 18);
    loop.mac.ioKit.sendPowerMessage(kIOMessageSystemWillNotSleep, 19);
    loop.mac.ioKit.sendPowerMessage(kIOMessageSystemWillPowerOn, 20);

    EXPECT_THAT(loop.mac.ioKit.allowedChanges, ElementsAre(17, 18));
}

TEST(MacRunLoop, DeregistersIfItCannotReceiveMessages) {
    FakeMac mac;
    mac.failing.insert("IONotificationPortGetRunLoopSource");
    MacClock clock;
    const MacRunLoop runLoop(clock);

    EXPECT_FALSE(mac.ioKit.powerClient);
    EXPECT_THAT(mac.misuse(), IsEmpty());
}

TEST(MacRunLoop, TimersMayOutliveIt) {
    FakeMac mac;
    MacClock clock;
    std::unique_ptr<RunLoopTimer> timer;
    {
        MacRunLoop runLoop(clock);
        timer = runLoop.scheduleRepeating(1000ms, [] { ADD_FAILURE() << "fired"; });
    }
    mac.runLoop.advance(5s);
    timer.reset();

    expectNothingHeld(mac);
}

TEST(MacRunLoop, HoldsNothingWhenCallsFail) {
    useWithFailingCalls([](FakeMac&) {},
                        [](FakeMac& mac) {
                            MacClock clock;
                            MacRunLoop runLoop(clock);
                            const auto timer = runLoop.scheduleRepeating(500ms, [] {});
                            runLoop.post([] {});
                            runLoop.runInBackground(TaskPriority::utility, [] {});
                            mac.runLoop.advance(1s);
                            mac.ioKit.sendPowerMessage(kIOMessageSystemHasPoweredOn);
                            runLoop.finishBackgroundTasks(1s);
                        });
}

}  // namespace
}  // namespace kestro
