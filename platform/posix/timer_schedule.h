#pragma once

#include "core/platform/clock.h"
#include "core/platform/run_loop.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kestro {

/// The first firing of a timer scheduled at `now`: as `nextFiringTime`, but at most a period after `now`, even if
/// that is off the grid.
MonotonicTime firstFiringTime(MonotonicTime now, std::chrono::milliseconds period);

/// The firing after one at `now`: the first multiple of `period` on the monotonic clock that is at least half a
/// period after `now`, so that rates between two firings never cover too short an interval. All timers share this
/// grid, so that timers of 1 s, 2 s and 5 s fire in one wake-up whenever they coincide.
MonotonicTime nextFiringTime(MonotonicTime now, std::chrono::milliseconds period);

/// The repeating timers of a run loop, which needs a single timer of the system for all of them. A firing
/// allocates no memory. The first firing is due half a period to a period after scheduling. Every later one is due
/// a period after the previous one; half a period to one and a half where that joins the grid or makes up for a
/// late firing, so two firings are never less than half a period apart. A timer whose task runs a nested event
/// loop does not fire again until that task returns. Main thread.
class TimerSchedule {
public:
    using Now = std::function<MonotonicTime()>;

    /// Called with the time of the earliest firing whenever it may have changed; nullopt: nothing is scheduled.
    using Arm = std::function<void(std::optional<MonotonicTime>)>;

    TimerSchedule(Now now, Arm arm);

    /// Timers that outlive the schedule stop firing.
    ~TimerSchedule();
    TimerSchedule(const TimerSchedule&) = delete;
    TimerSchedule& operator=(const TimerSchedule&) = delete;

    [[nodiscard]] std::unique_ptr<RunLoopTimer> add(std::chrono::milliseconds period, RunLoop::Task task);

    /// Chooses the timers that are due; `runDue` then runs their tasks, the oldest timer first. Arms for the next
    /// firing before that, so that the others keep firing in an event loop that a task runs.
    void collectDue();

    /// Chooses every timer, after a time without firings.
    void collectAll();

    void runDue();

    /// nullopt: nothing is scheduled.
    std::optional<std::chrono::milliseconds> shortestPeriod() const;

private:
    class Timer;
    struct Entry;

    void collectDueBy(MonotonicTime limit);
    void remove(const std::shared_ptr<Entry>& entry);
    void sweep();
    void arm() const;

    const Now now_;
    const Arm arm_;
    std::vector<std::shared_ptr<Entry>> entries_;
    std::shared_ptr<TimerSchedule*> self_;  // null after destruction, since timers may outlive it
    int firingDepth_ = 0;
    bool needsSweep_ = false;
};

}  // namespace kestro
