#pragma once

#include "core/platform/clock.h"
#include "core/platform/run_loop.h"
#include "platform/posix/timer_schedule.h"

#include <QObject>
#include <QSocketNotifier>
#include <QThreadPool>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

namespace kestro {

/// The run loop on Qt's event loop. One kernel timer serves all repeating timers, as TimerSchedule describes, and
/// is armed only for the earliest; with nothing scheduled it is off and nothing wakes the process.
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
    void fireDueTimers();
    void arm(std::optional<MonotonicTime> next);

    QObject mainThread_;
    int timerDescriptor_;
    QSocketNotifier notifier_;
    TimerSchedule timers_;
    std::uint64_t timerWakeUps_ = 0;
    QThreadPool utilityPool_;
    QThreadPool userInitiatedPool_;
};

}  // namespace kestro
