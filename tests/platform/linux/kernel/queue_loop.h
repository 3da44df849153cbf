#pragma once

#include "core/platform/run_loop.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <utility>

namespace kestro::test {

/// A main queue that the test processes itself.
class QueueLoop final : public RunLoop {
public:
    std::unique_ptr<RunLoopTimer> scheduleRepeating(std::chrono::milliseconds, Task) override { return nullptr; }
    void runInBackground(TaskPriority, Task) override {}
    void post(Task task) override {
        const std::lock_guard guard(mutex_);
        tasks_.push_back(std::move(task));
        changed_.notify_all();
    }

    /// Runs the next task; false when none arrives within a time that is ample on any healthy machine.
    bool runNext(std::chrono::milliseconds patience = std::chrono::seconds(20)) {
        Task task;
        {
            std::unique_lock lock(mutex_);
            if (!changed_.wait_for(lock, patience, [this] { return !tasks_.empty(); })) {
                return false;
            }
            task = std::move(tasks_.front());
            tasks_.pop_front();
        }
        task();
        return true;
    }

    std::size_t queued() {
        const std::lock_guard guard(mutex_);
        return tasks_.size();
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Task> tasks_;
};

}  // namespace kestro::test
