#pragma once

#include "core/platform/clock.h"
#include "core/platform/run_loop.h"
#include "platform/macos/owned.h"
#include "platform/macos/system_wake.h"
#include "platform/posix/timer_schedule.h"

#include <CoreFoundation/CoreFoundation.h>
#include <dispatch/dispatch.h>

#include <atomic>
#include <chrono>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>

namespace kestro {

/// The main thread's CFRunLoop, which the toolkit's event loop runs too, in all its common modes: timers and tasks
/// keep running while a menu is open or a window is being dragged. One timer of the system serves all repeating
/// timers, as TimerSchedule describes, with a tolerance of a tenth of the shortest period; with nothing scheduled
/// it is off. Timers do not count the time that the machine sleeps; after waking up all of them fire at once.
///
/// Lives on the main thread; `post` and `runInBackground` may be called from any thread while it exists. Main
/// thread tasks always start from the run loop itself, so one that runs a nested loop holds up no other.
class MacRunLoop final : public RunLoop {
public:
    /// `clock` outlives this object.
    explicit MacRunLoop(const Clock& clock);

    /// Drops background tasks that have not started and waits for the running ones, however long they take. Drops
    /// the posted tasks. Timers that outlive the run loop stop firing.
    ~MacRunLoop() override;
    MacRunLoop(const MacRunLoop&) = delete;
    MacRunLoop& operator=(const MacRunLoop&) = delete;

    std::unique_ptr<RunLoopTimer> scheduleRepeating(std::chrono::milliseconds period, Task task) override;
    void post(Task task) override;
    void runInBackground(TaskPriority priority, Task task) override;

    /// Drops background tasks that have not started and waits at most `bound` for the running ones. False: some
    /// are still running, and everything they refer to must stay alive. Main thread.
    bool finishBackgroundTasks(std::chrono::milliseconds bound);

private:
    struct BackgroundTask;

    static void timerFired(CFRunLoopTimerRef timer, void* self);
    static void perform(void* self);

    void arm(std::optional<MonotonicTime> next);
    void wakeMainThread();
    void runPosted();

    const Clock& clock_;
    CFOwned<CFRunLoopTimerRef> timer_;
    CFOwned<CFRunLoopSourceRef> source_;
    DispatchOwned<dispatch_group_t> backgroundTasks_;
    std::shared_ptr<std::atomic<bool>> isFinishing_ = std::make_shared<std::atomic<bool>>(false);
    TimerSchedule timers_;
    SystemWake wake_;

    std::mutex mutex_;
    std::deque<Task> posted_;  ///< guarded by the mutex
};

}  // namespace kestro
