#pragma once

#include "core/base/lifetime.h"
#include "core/platform/run_loop.h"

#include <functional>
#include <utility>

namespace kestro {

/// Runs a task once in the next turn of the main queue, however often it was requested: a sample publishes a
/// dozen properties, and one update covers them all. Main thread; destruction drops a pending request.
class CoalescedTask {
public:
    /// `runLoop` outlives it.
    CoalescedTask(RunLoop& runLoop, std::function<void()> task) : runLoop_(runLoop), task_(std::move(task)) {}

    void request() {
        if (std::exchange(isRequested_, true)) {
            return;
        }
        runLoop_.post([this, alive = lifetime_.watch()] {
            if (!alive.expired()) {
                isRequested_ = false;
                task_();
            }
        });
    }

private:
    RunLoop& runLoop_;
    std::function<void()> task_;
    bool isRequested_ = false;
    Lifetime lifetime_;
};

}  // namespace kestro
