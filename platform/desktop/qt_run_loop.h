#pragma once

#include "core/platform/clock.h"
#include "core/platform/run_loop.h"

#include <QObject>
#include <QSocketNotifier>
#include <QThreadPool>

#include <chrono>
#include <cstdint>
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

/// The run loop on Qt's event loop. One kernel timer serves all repeating timers and is armed only for the
/// earliest; with nothing scheduled it is off and nothing wakes the process. A firing allocates no memory. The
/// first firing is due half a period to a period after scheduling. Every later one is due a period after the
/// previous one; half a period to one and a half where that joins the grid or makes up for a late firing, so two
/// firings are never less than half a period apart. A timer whose task runs a nested event loop does not fire
/// again until that task returns.
///
/// Lives on the main thread, after the application object; `post` and `runInBackground` may be called from any
/// thread while it exists.
class QtRunLoop final : public RunLoop {
public:
    QtRunLoop();

    /// Drops background tasks that have not started and waits for the running ones, however long they take.
    /// Timers that outlive the run loop stop firing.
    ~QtRunLoop() override;
    QtRunLoop(const QtRunLoop&) = delete;
    QtRunLoop& operator=(const QtRunLoop&) = delete;

    std::unique_ptr<RunLoopTimer> scheduleRepeating(std::chrono::milliseconds period, Task task) override;
    void post(Task task) override;

    /// At most two tasks of utility priority and four of user-initiated priority run at once; the others queue,
    /// separately for each priority. Idle threads exit after a while.
    void runInBackground(TaskPriority priority, Task task) override;

    /// Drops background tasks that have not started and waits at most `bound` for the running ones. False: some
    /// are still running, and everything they refer to must stay alive. Main thread.
    bool finishBackgroundTasks(std::chrono::milliseconds bound);

    /// How often the kernel timer has woken the main thread.
    std::uint64_t timerWakeUps() const { return timerWakeUps_; }

    /// When the kernel timer will fire; nullopt while it is off.
    std::optional<MonotonicTime> nextTimerWakeUp() const;

private:
    class Timer;
    struct Entry;

    void fireDueTimers();
    void runPendingTasks();
    void remove(const std::shared_ptr<Entry>& entry);
    void sweep();
    void arm();

    QObject mainThread_;
    int timerDescriptor_;
    QSocketNotifier notifier_;
    std::vector<std::shared_ptr<Entry>> entries_;
    std::shared_ptr<QtRunLoop*> self_;  // null after destruction, since timers may outlive it
    int firingDepth_ = 0;
    bool needsSweep_ = false;
    std::uint64_t timerWakeUps_ = 0;
    QThreadPool utilityPool_;
    QThreadPool userInitiatedPool_;
};

}  // namespace kestro
