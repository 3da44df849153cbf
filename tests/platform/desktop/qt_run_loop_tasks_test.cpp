#include "platform/desktop/qt_run_loop.h"
#include "tests/support/event_waiting.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QThread>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <set>
#include <thread>
#include <vector>

namespace kestro {
namespace {

using namespace std::chrono_literals;

TEST(QtRunLoop, RunsPostedTasksInOrderOnTheMainThread) {
    QtRunLoop runLoop;
    std::vector<int> order;
    std::set<QThread*> threads;
    const auto record = [&](int number) {
        order.push_back(number);
        threads.insert(QThread::currentThread());
    };

    std::thread poster([&] {
        for (int number = 0; number < 100; ++number) {
            runLoop.post([&record, number] { record(number); });
        }
    });
    poster.join();

    EXPECT_TRUE(order.empty());
    ASSERT_TRUE(waitUntil([&] { return order.size() == 100; }));
    EXPECT_TRUE(std::ranges::is_sorted(order));
    EXPECT_EQ(threads, std::set<QThread*>{QCoreApplication::instance()->thread()});
}

TEST(QtRunLoop, UrgentTasksNeverWaitBehindOrdinaryOnes) {
    QtRunLoop runLoop;
    QSemaphore gate;
    QSemaphore urgentRan;
    for (int task = 0; task < 10; ++task) {
        runLoop.runInBackground(TaskPriority::utility, [&] { gate.acquire(); });
    }

    runLoop.runInBackground(TaskPriority::userInitiated, [&] { urgentRan.release(); });

    EXPECT_TRUE(urgentRan.tryAcquire(1, 20'000));
    gate.release(10);
}

TEST(QtRunLoop, BoundsItsThreads) {
    std::atomic<int> running = 0;
    std::atomic<int> most = 0;
    std::atomic<int> done = 0;
    {
        QtRunLoop runLoop;
        for (int task = 0; task < 200; ++task) {
            runLoop.runInBackground(TaskPriority::utility, [&] {
                const int now = ++running;
                int seen = most;
                while (seen < now && !most.compare_exchange_weak(seen, now)) {
                }
                std::this_thread::yield();
                --running;
                ++done;
            });
        }
        ASSERT_TRUE(waitUntil([&] { return done == 200; }));
    }

    EXPECT_LE(most, 2);
}

TEST(QtRunLoop, FinishingDropsQueuedTasksAndWaitsForRunningOnes) {
    QtRunLoop runLoop;
    QSemaphore began;
    QSemaphore gate;
    std::atomic<int> ended = 0;
    for (int task = 0; task < 10; ++task) {
        runLoop.runInBackground(TaskPriority::utility, [&] {
            began.release();
            gate.acquire();
            ++ended;
        });
    }
    ASSERT_TRUE(began.tryAcquire(2, 20'000));

    EXPECT_FALSE(runLoop.finishBackgroundTasks(1ms));
    gate.release(2);
    EXPECT_TRUE(runLoop.finishBackgroundTasks(20s));

    EXPECT_EQ(ended, 2);
}

}  // namespace
}  // namespace kestro
