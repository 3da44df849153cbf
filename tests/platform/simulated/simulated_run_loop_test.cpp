#include "platform/simulated/simulated_run_loop.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

using namespace std::chrono_literals;

class SimulatedRunLoopTest : public testing::Test {
protected:
    SimulatedClock clock;
    SimulatedRunLoop runLoop{clock};
    std::string order;

    std::function<void()> note(char character) {
        return [this, character] { order += character; };
    }
};

TEST_F(SimulatedRunLoopTest, FiresTimersInDueOrder) {
    const auto slow = runLoop.scheduleRepeating(3s, note('s'));
    const auto fast = runLoop.scheduleRepeating(2s, note('f'));

    runLoop.advance(6s);

    EXPECT_EQ(order, "fsfsf");
}

TEST_F(SimulatedRunLoopTest, FiresTheOlderOfTwoTimersDueTogetherFirst) {
    const auto older = runLoop.scheduleRepeating(1s, note('o'));
    const auto younger = runLoop.scheduleRepeating(1s, note('y'));

    runLoop.advance(2s);

    EXPECT_EQ(order, "oyoy");
}

TEST_F(SimulatedRunLoopTest, SetsTheClockToEachTimersDueTime) {
    std::vector<std::chrono::nanoseconds> moments;
    const auto timer = runLoop.scheduleRepeating(1500ms, [&] { moments.push_back(clock.elapsed()); });

    runLoop.advance(4s);

    EXPECT_EQ(moments, (std::vector<std::chrono::nanoseconds>{1500ms, 3s}));
    EXPECT_EQ(clock.elapsed(), 4s);
    EXPECT_EQ(clock.wallNow(), SimulatedClock::startOfWall + 4s);
}

TEST_F(SimulatedRunLoopTest, ATimerMayBeDestroyedInsideItsOwnCallback) {
    std::unique_ptr<RunLoopTimer> timer;
    timer = runLoop.scheduleRepeating(1s, [this, &timer] {
        timer.reset();
        order += 'x';
    });

    runLoop.advance(5s);

    EXPECT_EQ(order, "x");
    EXPECT_TRUE(runLoop.timerPeriods().empty());
}

TEST_F(SimulatedRunLoopTest, ATimerMayOutliveTheRunLoop) {
    std::unique_ptr<RunLoopTimer> timer;
    {
        SimulatedRunLoop shortLived(clock);
        timer = shortLived.scheduleRepeating(1s, note('x'));
    }

    timer.reset();

    EXPECT_EQ(order, "");
}

TEST_F(SimulatedRunLoopTest, RunsTasksPostedByATimerBeforeTheNextTimer) {
    const auto first = runLoop.scheduleRepeating(1s, [this] { runLoop.post(note('p')); });
    const auto second = runLoop.scheduleRepeating(1s, note('t'));

    runLoop.advance(2s);

    EXPECT_EQ(order, "ptpt");
}

TEST_F(SimulatedRunLoopTest, RunsNothingInsideThePostingCall) {
    runLoop.post(note('p'));
    runLoop.runInBackground(TaskPriority::utility, note('b'));

    EXPECT_EQ(order, "");
    runLoop.runPending();
    EXPECT_EQ(order, "pb");
    EXPECT_EQ(clock.elapsed(), 0s);
}

TEST_F(SimulatedRunLoopTest, FinishesHeldBackgroundTasksInTheChosenOrder) {
    runLoop.holdBackgroundTasks();
    for (const char character : {'a', 'b', 'c'}) {
        runLoop.runInBackground(TaskPriority::userInitiated, [this, character] { runLoop.post(note(character)); });
    }

    runLoop.runPending();
    EXPECT_EQ(order, "");
    runLoop.finishBackgroundTask(2);
    runLoop.finishBackgroundTask(0);
    EXPECT_EQ(runLoop.heldBackgroundTasks(), 1);
    runLoop.releaseBackgroundTasks();

    EXPECT_EQ(order, "cab");
    EXPECT_EQ(runLoop.startedBackgroundTasks(TaskPriority::userInitiated), 3);
    EXPECT_EQ(runLoop.startedBackgroundTasks(TaskPriority::utility), 0);
}

TEST_F(SimulatedRunLoopTest, RunsADayOfTicks) {
    std::int64_t ticks = 0;
    const auto timer = runLoop.scheduleRepeating(500ms, [&] { ++ticks; });

    runLoop.advance(24h);

    EXPECT_EQ(ticks, 172'800);
}

}  // namespace
}  // namespace kestro
