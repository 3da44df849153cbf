#pragma once

#include "core/platform/run_loop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

namespace kestro {

/// What every RunLoop promises. A Subject has `port()`, and `runUntil(done)`, which runs the main thread, and lets
/// time pass, until `done` returns true or a hanging test must end.
template <typename Subject>
class RunLoopContract : public testing::Test {
protected:
    Subject subject;
};
TYPED_TEST_SUITE_P(RunLoopContract);

using namespace std::chrono_literals;

TYPED_TEST_P(RunLoopContract, RunsPostedTasksInOrder) {
    std::vector<int> order;
    this->subject.port().post([&] { order.push_back(1); });
    this->subject.port().post([&] { order.push_back(2); });
    EXPECT_TRUE(order.empty());

    this->subject.runUntil([&] { return order.size() == 2; });

    EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

TYPED_TEST_P(RunLoopContract, RunsATaskThatATaskPosts) {
    bool isDone = false;
    this->subject.port().post([&] { this->subject.port().post([&] { isDone = true; }); });

    this->subject.runUntil([&] { return isDone; });

    EXPECT_TRUE(isDone);
}

TYPED_TEST_P(RunLoopContract, FiresUntilTheTimerIsDestroyed) {
    int firings = 0;
    bool isOver = false;
    auto timer = this->subject.port().scheduleRepeating(20ms, [&] { ++firings; });
    this->subject.runUntil([&] { return firings == 3; });

    timer.reset();
    const auto witness = this->subject.port().scheduleRepeating(50ms, [&] { isOver = true; });
    this->subject.runUntil([&] { return isOver; });

    EXPECT_EQ(firings, 3);
}

TYPED_TEST_P(RunLoopContract, ATimerMayBeDestroyedByItsOwnTask) {
    std::unique_ptr<RunLoopTimer> timer;
    const auto witness = std::make_shared<int>(0);
    timer = this->subject.port().scheduleRepeating(10ms, [&timer, witness] {
        ++*witness;
        timer.reset();
    });

    this->subject.runUntil([&] { return witness.use_count() == 1; });

    EXPECT_EQ(*witness, 1);
    EXPECT_EQ(witness.use_count(), 1);
}

TYPED_TEST_P(RunLoopContract, TheOldestOfTimersDueTogetherFiresFirst) {
    std::vector<int> order;
    const auto first = this->subject.port().scheduleRepeating(40ms, [&] { order.push_back(1); });
    const auto second = this->subject.port().scheduleRepeating(40ms, [&] { order.push_back(2); });

    this->subject.runUntil([&] { return std::ranges::count(order, 2) == 2; });

    // The first may have begun a period earlier.
    ASSERT_GE(order.size(), 4U);
    EXPECT_EQ(std::vector<int>(order.end() - 4, order.end()), (std::vector<int>{1, 2, 1, 2}));
}

TYPED_TEST_P(RunLoopContract, FinishesBackgroundTasksOnTheMainThread) {
    int results = 0;
    const auto main = std::this_thread::get_id();
    for (const auto priority : {TaskPriority::utility, TaskPriority::userInitiated}) {
        this->subject.port().runInBackground(priority, [&] {
            this->subject.port().post([&] {
                EXPECT_EQ(std::this_thread::get_id(), main);
                ++results;
            });
        });
    }

    this->subject.runUntil([&] { return results == 2; });

    EXPECT_EQ(results, 2);
}

REGISTER_TYPED_TEST_SUITE_P(RunLoopContract, RunsPostedTasksInOrder, RunsATaskThatATaskPosts,
                            FiresUntilTheTimerIsDestroyed, ATimerMayBeDestroyedByItsOwnTask,
                            TheOldestOfTimersDueTogetherFiresFirst, FinishesBackgroundTasksOnTheMainThread);

}  // namespace kestro
