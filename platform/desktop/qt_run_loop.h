#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "core/platform/clock.h"
#include "core/platform/run_loop.h"

#include <QObject>
#include <QSocketNotifier>
#include <QThreadPool>

namespace kestro {

/// The first firing of a timer that is scheduled at `now`: the first whole multiple of `period` on the monotonic
/// clock that lies at least a period after `now`. All timers share this grid, so that timers of 1 s, 2 s and
/// 5 s fire in one wake-up whenever their times coincide.
MonotonicTime firstFiringTime(MonotonicTime now, std::chrono::milliseconds period);

/// The firing that follows one at `now`: the first point of the grid that lies at least half a period after
/// `now`, so that what is measured from one firing to the next never is a rate over a moment.
MonotonicTime nextFiringTime(MonotonicTime now, std::chrono::milliseconds period);

/// The run loop on Qt's event loop. One kernel timer serves every repeating timer and is armed for the earliest
/// of them only; with nothing scheduled it is off and nothing wakes the process. A firing allocates no memory.
/// The first firing comes one to two periods after scheduling (never early), every later one a period after
/// the one before is due, or two where that one is late by more than half a period: two firings are never less
/// than half a period apart. A timer whose task runs a nested event loop does not fire again until that task
/// returns.
///
/// Lives on the main thread, after the application object; `post` and `runInBackground` may be called from any
/// thread as long as it lives.
class QtRunLoop final : public RunLoop {
public:
    QtRunLoop();

    /// Drops background tasks that have not begun and waits for those that have, however long they take.
    /// Timers that outlive the run loop stop firing.
    ~QtRunLoop() override;
    QtRunLoop(const QtRunLoop&) = delete;
    QtRunLoop& operator=(const QtRunLoop&) = delete;

    std::unique_ptr<RunLoopTimer> scheduleRepeating(std::chrono::milliseconds period, Task task) override;
    void post(Task task) override;

    /// At most two tasks of utility priority and four of user-initiated priority run at once; the others wait
    /// their turn, those of one priority never behind those of the other. Idle threads end by themselves.
    void runInBackground(TaskPriority priority, Task task) override;

    /// Drops background tasks that have not begun and waits at most `bound` for those that have. False: some
    /// still run, and with them whatever they refer to must stay alive. Main thread.
    bool finishBackgroundTasks(std::chrono::milliseconds bound);

    /// How often the kernel timer has woken the main thread.
    std::uint64_t timerWakeUps() const { return timerWakeUps_; }

    /// When the kernel timer will go off; nullopt while it is off.
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
    std::shared_ptr<QtRunLoop*> self_;  // emptied at destruction: timers may live longer
    int firingDepth_ = 0;
    bool needsSweep_ = false;
    std::uint64_t timerWakeUps_ = 0;
    QThreadPool utilityPool_;
    QThreadPool userInitiatedPool_;
};

}  // namespace kestro
