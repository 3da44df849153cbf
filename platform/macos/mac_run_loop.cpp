#include "platform/macos/mac_run_loop.h"

#include <sys/qos.h>

#include <cstdint>
#include <utility>

namespace kestro {

namespace {

constexpr CFTimeInterval never = 100.0 * 365 * 24 * 3600;
constexpr double toleratedShare = 0.1;

/// More than the rounding of a date, so that the system's timer never fires before ours are due.
constexpr CFTimeInterval dateResolution = 1e-6;

double secondsOf(std::chrono::nanoseconds duration) {
    return std::chrono::duration<double>(duration).count();
}

CFOwned<CFRunLoopTimerRef> makeTimer(CFRunLoopTimerCallBack callback, void* context) {
    CFRunLoopTimerContext description{};
    description.info = context;
    // With a period, because a timer without one is invalid once it has fired.
    return CFOwned<CFRunLoopTimerRef>(CFRunLoopTimerCreate(kCFAllocatorDefault, CFAbsoluteTimeGetCurrent() + never,
                                                           never, 0, 0, callback, &description));
}

CFOwned<CFRunLoopSourceRef> makeSource(void (*perform)(void*), void* context) {
    CFRunLoopSourceContext description{};
    description.info = context;
    description.perform = perform;
    return CFOwned<CFRunLoopSourceRef>(CFRunLoopSourceCreate(kCFAllocatorDefault, 0, &description));
}

}  // namespace

/// A task on its way to another thread; deletes itself there.
struct MacRunLoop::BackgroundTask {
    std::shared_ptr<const std::atomic<bool>> isFinishing;
    Task task;

    static void run(void* context) {
        const std::unique_ptr<BackgroundTask> self(static_cast<BackgroundTask*>(context));
        if (!*self->isFinishing) {
            self->task();
        }
    }
};

MacRunLoop::MacRunLoop(const Clock& clock)
    : clock_(clock),
      timer_(makeTimer(&timerFired, this)),
      source_(makeSource(&perform, this)),
      backgroundTasks_(dispatch_group_create()),
      timers_([this] { return clock_.monotonicNow(); }, [this](std::optional<MonotonicTime> next) { arm(next); }),
      wake_([this] {
          timers_.collectAll();
          wakeMainThread();
      }) {
    if (timer_) {
        CFRunLoopAddTimer(CFRunLoopGetMain(), timer_.get(), kCFRunLoopCommonModes);
    }
    if (source_) {
        CFRunLoopAddSource(CFRunLoopGetMain(), source_.get(), kCFRunLoopCommonModes);
    }
}

MacRunLoop::~MacRunLoop() {
    *isFinishing_ = true;
    if (backgroundTasks_) {
        dispatch_group_wait(backgroundTasks_.get(), DISPATCH_TIME_FOREVER);
    }
    if (timer_) {
        CFRunLoopTimerInvalidate(timer_.get());
    }
    if (source_) {
        CFRunLoopSourceInvalidate(source_.get());
    }
}

std::unique_ptr<RunLoopTimer> MacRunLoop::scheduleRepeating(std::chrono::milliseconds period, Task task) {
    return timers_.add(period, std::move(task));
}

void MacRunLoop::post(Task task) {
    {
        const std::scoped_lock guard(mutex_);
        posted_.push_back(std::move(task));
    }
    wakeMainThread();
}

void MacRunLoop::runInBackground(TaskPriority priority, Task task) {
    const auto quality = priority == TaskPriority::utility ? QOS_CLASS_UTILITY : QOS_CLASS_USER_INITIATED;
    auto background = std::make_unique<BackgroundTask>(BackgroundTask{isFinishing_, std::move(task)});
    if (backgroundTasks_) {
        dispatch_group_async_f(backgroundTasks_.get(), dispatch_get_global_queue(quality, 0), background.release(),
                               &BackgroundTask::run);
    }
}

bool MacRunLoop::finishBackgroundTasks(std::chrono::milliseconds bound) {
    *isFinishing_ = true;
    const auto deadline = dispatch_time(DISPATCH_TIME_NOW, std::chrono::nanoseconds(bound).count());
    return !backgroundTasks_ || dispatch_group_wait(backgroundTasks_.get(), deadline) == 0;
}

void MacRunLoop::timerFired(CFRunLoopTimerRef, void* self) {
    auto& runLoop = *static_cast<MacRunLoop*>(self);
    runLoop.timers_.collectDue();
    // The tasks run outside this function: the system's timer does not fire again until it returns.
    runLoop.wakeMainThread();
}

void MacRunLoop::perform(void* self) {
    auto& runLoop = *static_cast<MacRunLoop*>(self);
    runLoop.runPosted();
    runLoop.timers_.runDue();
}

void MacRunLoop::arm(std::optional<MonotonicTime> next) {
    if (!timer_) {
        return;
    }
    const double wait = next ? secondsOf(*next - clock_.monotonicNow()) + dateResolution : never;
    CFRunLoopTimerSetNextFireDate(timer_.get(), CFAbsoluteTimeGetCurrent() + wait);
    if (const auto shortest = timers_.shortestPeriod()) {
        CFRunLoopTimerSetTolerance(timer_.get(), secondsOf(*shortest) * toleratedShare);
    }
}

void MacRunLoop::wakeMainThread() {
    if (source_) {
        CFRunLoopSourceSignal(source_.get());
        CFRunLoopWakeUp(CFRunLoopGetMain());
    }
}

void MacRunLoop::runPosted() {
    Task task;
    bool hasMore = false;
    {
        const std::scoped_lock guard(mutex_);
        if (posted_.empty()) {
            return;
        }
        task = std::move(posted_.front());
        posted_.pop_front();
        hasMore = !posted_.empty();
    }
    // First: the task may run a nested event loop, which then runs the others.
    if (hasMore) {
        wakeMainThread();
    }
    task();
}

}  // namespace kestro
