#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace kestro {

/// Urgency of background work: `userInitiated` when the user is waiting for it, `utility` otherwise.
enum class TaskPriority { utility, userInitiated };

/// A running timer; destroying it cancels it, even inside its own callback.
class RunLoopTimer {
public:
    virtual ~RunLoopTimer() = default;
};

/// The main run loop: timers, the main thread's task queue, and background tasks.
class RunLoop {
public:
    using Task = std::function<void()>;

    virtual ~RunLoop() = default;

    /// Calls `task` on the main thread every `period` until the returned timer is destroyed, for the first time
    /// half a period to a period from now. A timer never fires inside another call, except in an event loop that
    /// the call runs. Timers are coarse: they may fire late by a
    /// fraction of the period to share wake-ups, and missed firings are dropped. Of timers due together the oldest
    /// fires first; a task posted by one may run before or after the next timer fires. Main thread.
    [[nodiscard]] virtual std::unique_ptr<RunLoopTimer> scheduleRepeating(std::chrono::milliseconds period,
                                                                          Task task) = 0;

    /// Appends a task to the main thread's queue. Any thread.
    virtual void post(Task task) = 0;

    /// Runs a task off the main thread; tasks may overlap and finish in any order. Any thread.
    virtual void runInBackground(TaskPriority priority, Task task) = 0;
};

}  // namespace kestro
