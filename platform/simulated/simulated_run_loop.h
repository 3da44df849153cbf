#pragma once

#include "core/platform/run_loop.h"
#include "platform/simulated/simulated_clock.h"

#include <cstdint>
#include <deque>
#include <vector>

namespace kestro {

/// A run loop that runs only on request, entirely on the test's thread. Tasks run in posting order, timers in due
/// order. Background tasks run like posted ones unless held; the test finishes held ones individually, in any
/// order.
class SimulatedRunLoop final : public RunLoop {
public:
    explicit SimulatedRunLoop(SimulatedClock& clock);
    ~SimulatedRunLoop() override;

    [[nodiscard]] std::unique_ptr<RunLoopTimer> scheduleRepeating(std::chrono::milliseconds period,
                                                                  Task task) override;
    void post(Task task) override;
    void runInBackground(TaskPriority priority, Task task) override;

    /// Advances the clock and runs everything that falls due.
    void advance(std::chrono::nanoseconds duration);

    /// Runs posted and background tasks until none is left, without advancing the clock.
    void runPending();

    /// From now on, background tasks wait for `finishBackgroundTask`.
    void holdBackgroundTasks() { holdsBackgroundTasks_ = true; }

    /// Finishes the held tasks in order and stops holding new ones.
    void releaseBackgroundTasks();

    /// Runs one held task (0 is the oldest) and then everything it posted.
    void finishBackgroundTask(std::size_t index);

    std::int64_t heldBackgroundTasks() const { return std::ssize(held_); }

    /// Number of background tasks started so far at this priority.
    std::int64_t startedBackgroundTasks(TaskPriority priority) const;

    /// Periods of the running timers, oldest timer first.
    std::vector<std::chrono::milliseconds> timerPeriods() const;

    std::int64_t scheduledTimers() const { return scheduledTimers_; }  ///< total so far, including cancelled ones

private:
    struct TimerState;
    struct TimerList;
    class Timer;

    std::shared_ptr<TimerState> nextDueBy(MonotonicTime moment) const;

    SimulatedClock& clock_;
    std::shared_ptr<TimerList> timers_;
    std::deque<Task> tasks_;
    std::deque<Task> held_;
    bool holdsBackgroundTasks_ = false;
    std::int64_t startedUtility_ = 0;
    std::int64_t startedUserInitiated_ = 0;
    std::int64_t scheduledTimers_ = 0;
};

}  // namespace kestro
