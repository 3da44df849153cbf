#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace kestro {

/// How urgent background work is: `userInitiated` for work that somebody waits for, `utility` for the rest.
enum class TaskPriority { utility, userInitiated };

/// A running timer; destroying it invalidates it, also from inside its own firing.
class RunLoopTimer {
public:
    virtual ~RunLoopTimer() = default;
};

/// The main run loop: timers, the main thread's task queue, and background tasks.
class RunLoop {
public:
    using Task = std::function<void()>;

    virtual ~RunLoop() = default;

    /// Calls `task` on the main thread every `period` until the returned timer dies. A firing
    /// never comes inside another call, except in an event loop that this one runs. Timers are coarse: firings
    /// may be late by a fraction of the period so that timers share a wake-up, and missed firings are not made
    /// up for. Of timers that fall due together the oldest fires first; what a firing posts may run before or
    /// after the next one's. Main thread.
    [[nodiscard]] virtual std::unique_ptr<RunLoopTimer> scheduleRepeating(std::chrono::milliseconds period,
                                                                          Task task) = 0;

    /// Appends a task to the main thread's queue. Any thread.
    virtual void post(Task task) = 0;

    /// Runs a task off the main thread; tasks may overlap and end in any order. Any thread.
    virtual void runInBackground(TaskPriority priority, Task task) = 0;
};

}  // namespace kestro
