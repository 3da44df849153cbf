#include "platform/desktop/qt_run_loop.h"

#include "tests/support/allocation_counter.h"
#include "tests/support/event_waiting.h"

#include <QEventLoop>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
#include <thread>
#include <vector>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using test::allocationsOfThisThread;

TEST(QtRunLoop, SleepsWithNothingScheduled) {
    QtRunLoop runLoop;

    EXPECT_EQ(runLoop.nextTimerWakeUp(), std::nullopt);
    {
        const auto timer = runLoop.scheduleRepeating(1000ms, [] {});
        EXPECT_NE(runLoop.nextTimerWakeUp(), std::nullopt);
    }
    EXPECT_EQ(runLoop.nextTimerWakeUp(), std::nullopt);
}

TEST(QtRunLoop, FiresTimersOfDifferentPeriodsInOneWakeUp) {
    QtRunLoop runLoop;
    std::set<std::uint64_t> fast;
    std::set<std::uint64_t> slow;
    std::set<std::uint64_t> slowest;

    const auto slowTimer = runLoop.scheduleRepeating(200ms, [&] { slow.insert(runLoop.timerWakeUps()); });
    const auto fastTimer = runLoop.scheduleRepeating(100ms, [&] { fast.insert(runLoop.timerWakeUps()); });
    const auto slowestTimer = runLoop.scheduleRepeating(500ms, [&] { slowest.insert(runLoop.timerWakeUps()); });
    // The first firing of each may be off the grid.
    ASSERT_TRUE(waitUntil([&] { return !slow.empty() && !fast.empty() && !slowest.empty(); }));
    fast.clear();
    slow.clear();
    slowest.clear();
    const auto before = runLoop.timerWakeUps();
    ASSERT_TRUE(waitUntil([&] { return slowest.size() >= 3; }));

    EXPECT_TRUE(std::ranges::includes(fast, slow));
    EXPECT_TRUE(std::ranges::includes(fast, slowest));
    EXPECT_EQ(runLoop.timerWakeUps() - before, fast.size());
}

TEST(QtRunLoop, ArmsANewTimerForAtMostOnePeriod) {
    constexpr auto period = 60s;
    QtRunLoop runLoop;
    const auto before = std::chrono::steady_clock::now();

    const auto timer = runLoop.scheduleRepeating(period, [] {});
    const auto due = runLoop.nextTimerWakeUp();

    ASSERT_TRUE(due.has_value());
    EXPECT_GE(*due - before, period / 2);
    EXPECT_LE(*due, std::chrono::steady_clock::now() + period);
}

TEST(QtRunLoop, NeverFiresBeforeHalfAPeriodHasPassed) {
    QtRunLoop runLoop;
    const auto start = std::chrono::steady_clock::now();
    std::optional<MonotonicTime> first;

    const auto timer = runLoop.scheduleRepeating(60ms, [&] { first = std::chrono::steady_clock::now(); });
    ASSERT_TRUE(waitUntil([&] { return first.has_value(); }));

    EXPECT_GE(*first - start, 30ms);
}

TEST(QtRunLoop, DoesNotFireTwiceInQuickSuccessionAfterABusyThread) {
    constexpr auto period = 40ms;
    QtRunLoop runLoop;
    int firings = 0;
    MonotonicTime busyUntil;
    std::optional<MonotonicTime> dueNext;

    const auto timer = runLoop.scheduleRepeating(period, [&] {
        if (++firings == 1) {
            busyUntil = runLoop.nextTimerWakeUp().value_or(std::chrono::steady_clock::now()) + period - 4ms;
            while (std::chrono::steady_clock::now() < busyUntil) {
                std::this_thread::yield();
            }
        } else if (firings == 2) {
            dueNext = runLoop.nextTimerWakeUp();
        }
    });
    ASSERT_TRUE(waitUntil([&] { return dueNext.has_value(); }));

    EXPECT_GT(*dueNext - busyUntil, period / 2 - 1ms);
}

TEST(QtRunLoop, DoesNotFireTwiceInQuickSuccessionAfterABusyTimer) {
    constexpr auto period = 40ms;
    QtRunLoop runLoop;
    MonotonicTime busyUntil;
    std::optional<MonotonicTime> dueNext;

    std::unique_ptr<RunLoopTimer> busy = runLoop.scheduleRepeating(period, [&] {
        busyUntil = runLoop.nextTimerWakeUp().value_or(std::chrono::steady_clock::now()) - 4ms;
        while (std::chrono::steady_clock::now() < busyUntil) {
            std::this_thread::yield();
        }
        busy.reset();
    });
    const auto timer = runLoop.scheduleRepeating(period, [&] { dueNext = runLoop.nextTimerWakeUp(); });
    ASSERT_TRUE(waitUntil([&] { return dueNext.has_value(); }));

    EXPECT_GT(*dueNext - busyUntil, period / 2 - 1ms);
}

TEST(QtRunLoop, ATimerMayBeDestroyedByItsOwnTask) {
    QtRunLoop runLoop;
    std::unique_ptr<RunLoopTimer> timer;
    const auto witness = std::make_shared<int>(0);

    timer = runLoop.scheduleRepeating(5ms, [&timer, witness] {
        timer.reset();
        ++*witness;
    });
    ASSERT_TRUE(waitUntil([&] { return *witness == 1; }));

    EXPECT_EQ(witness.use_count(), 1) << "the task is destroyed with its timer";
    EXPECT_EQ(runLoop.nextTimerWakeUp(), std::nullopt);
}

TEST(QtRunLoop, ATimerDestroyedInTheSameWakeUpDoesNotFire) {
    QtRunLoop runLoop;
    std::unique_ptr<RunLoopTimer> victim;
    int killerFirings = 0;
    int victimFirings = 0;

    const auto killer = runLoop.scheduleRepeating(10ms, [&] {
        victim.reset();
        ++killerFirings;
    });
    victim = runLoop.scheduleRepeating(10ms, [&] { ++victimFirings; });
    ASSERT_TRUE(waitUntil([&] { return killerFirings == 3; }));

    EXPECT_EQ(victimFirings, 0);
}

TEST(QtRunLoop, ATimerMayScheduleAnother) {
    QtRunLoop runLoop;
    std::vector<std::unique_ptr<RunLoopTimer>> timers;
    int firings = 0;

    const auto first = runLoop.scheduleRepeating(5ms, [&] {
        if (timers.size() < 20) {
            timers.push_back(runLoop.scheduleRepeating(5ms, [&] { ++firings; }));
        }
    });

    EXPECT_TRUE(waitUntil([&] { return firings > 20; }));
}

TEST(QtRunLoop, OtherTimersKeepFiringWhileATaskRunsAnEventLoop) {
    QtRunLoop runLoop;
    int others = 0;
    int entered = 0;
    bool left = false;

    const auto blocking = runLoop.scheduleRepeating(5ms, [&] {
        if (++entered == 1) {
            left = waitUntil([&] { return others >= 3; });
        }
    });
    const auto other = runLoop.scheduleRepeating(5ms, [&] {
        ++others;
        EXPECT_TRUE(left || entered <= 1) << "fired again within its own task";
    });

    EXPECT_TRUE(waitUntil([&] { return left; }));
}

TEST(QtRunLoop, AFiringAllocatesNothing) {
    QtRunLoop runLoop;
    int firings = 0;
    std::uint64_t allocationsAtTheFirst = 0;
    std::uint64_t allocationsAtTheLast = 0;
    QEventLoop loop;

    const auto timer = runLoop.scheduleRepeating(5ms, [&] {
        ++firings;
        if (firings == 5) {
            allocationsAtTheFirst = allocationsOfThisThread();
        } else if (firings == 25) {
            allocationsAtTheLast = allocationsOfThisThread();
            loop.quit();
        }
    });
    loop.exec();

    EXPECT_EQ(allocationsAtTheLast, allocationsAtTheFirst);
}

TEST(QtRunLoop, ATimerMayOutliveIt) {
    std::unique_ptr<RunLoopTimer> timer;
    {
        QtRunLoop runLoop;
        timer = runLoop.scheduleRepeating(5ms, [] { FAIL(); });
    }

    timer.reset();
}

TEST(QtRunLoop, DoesNotCatchUpOnFiringsMissedInItsOwnEventLoop) {
    QtRunLoop runLoop;
    std::vector<char> firings;
    QEventLoop nested;
    MonotonicTime due;
    const auto slow = runLoop.scheduleRepeating(400ms, [&] {
        firings.push_back('s');
        if (std::ranges::count(firings, 's') == 1) {
            due = nextFiringTime(std::chrono::steady_clock::now(), 400ms);
            nested.exec();
            firings.push_back('|');
        }
    });
    const auto fast = runLoop.scheduleRepeating(10ms, [&] {
        firings.push_back('f');
        if (nested.isRunning() && std::chrono::steady_clock::now() > due + 20ms) {
            nested.quit();
        }
    });

    ASSERT_TRUE(waitUntil([&] { return std::ranges::count(firings, 's') == 2; }));

    const auto back = std::ranges::find(firings, '|');
    ASSERT_NE(back, firings.end());
    EXPECT_EQ(*std::next(back), 'f');
}

}  // namespace
}  // namespace kestro
