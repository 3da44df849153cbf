#pragma once

#include "core/platform/run_loop.h"

#include <algorithm>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

namespace kestro::test {

/// A run loop driven by the test: nothing runs by itself. One thread.
class ManualRunLoop final : public RunLoop {
public:
    std::unique_ptr<RunLoopTimer> scheduleRepeating(std::chrono::milliseconds period, Task task) override {
        auto shared = std::make_shared<Task>(std::move(task));
        timers_.push_back(shared);
        lastPeriod = period;
        ++scheduledTimers;
        return std::make_unique<Timer>(std::move(shared));
    }

    void post(Task task) override { posted_.push_back(std::move(task)); }
    void runInBackground(TaskPriority, Task task) override { background_.push_back(std::move(task)); }

    /// Fires every existing timer once.
    void fireTimers() {
        const auto timers = timers_;
        for (const auto& timer : timers) {
            if (const auto task = timer.lock()) {
                (*task)();
            }
        }
    }

    /// Runs the posted tasks.
    void endTurn() {
        for (auto& task : std::exchange(posted_, {})) {
            task();
        }
    }

    /// Runs the background tasks, then what they posted.
    void runTasks() {
        for (auto& task : std::exchange(background_, {})) {
            task();
        }
        endTurn();
    }

    std::ptrdiff_t runningTimers() const {
        return std::ranges::count_if(timers_, [](const auto& timer) { return !timer.expired(); });
    }
    std::size_t waitingBackgroundTasks() const { return background_.size(); }

    std::chrono::milliseconds lastPeriod{};
    int scheduledTimers = 0;  ///< so far

private:
    struct Timer final : RunLoopTimer {
        explicit Timer(std::shared_ptr<Task> held) : task(std::move(held)) {}
        std::shared_ptr<Task> task;
    };

    std::vector<std::weak_ptr<Task>> timers_;
    std::deque<Task> posted_;
    std::deque<Task> background_;
};

}  // namespace kestro::test
