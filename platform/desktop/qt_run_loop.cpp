#include "platform/desktop/qt_run_loop.h"

#include <QDeadlineTimer>
#include <QMetaObject>

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cassert>
#include <utility>

namespace kestro {

namespace {

constexpr int maximumUtilityThreads = 2;
constexpr int maximumUserInitiatedThreads = 4;
constexpr int threadExpiryMilliseconds = 10'000;

timespec toTimespec(MonotonicTime time) {
    const auto sinceOrigin = time.time_since_epoch();
    const auto seconds = std::chrono::floor<std::chrono::seconds>(sinceOrigin);
    return {static_cast<time_t>(seconds.count()),
            static_cast<long>(std::chrono::nanoseconds(sinceOrigin - seconds).count())};
}

/// The first multiple of `period` that is not before `earliest`.
MonotonicTime gridPoint(MonotonicTime earliest, std::chrono::nanoseconds period) {
    const std::int64_t multiples = (earliest.time_since_epoch() + period - std::chrono::nanoseconds(1)) / period;
    return MonotonicTime(multiples * period);
}

}  // namespace

MonotonicTime firstFiringTime(MonotonicTime now, std::chrono::milliseconds period) {
    return std::min<MonotonicTime>(nextFiringTime(now, period), now + period);
}

MonotonicTime nextFiringTime(MonotonicTime now, std::chrono::milliseconds period) {
    return gridPoint(now + std::chrono::nanoseconds(period) / 2, period);
}

struct QtRunLoop::Entry {
    std::chrono::milliseconds period;
    Task task;
    MonotonicTime due;
    bool live = true;
    bool pending = false;  // due, but its task has not started yet
    bool running = false;
};

class QtRunLoop::Timer final : public RunLoopTimer {
public:
    Timer(std::weak_ptr<QtRunLoop*> runLoop, std::shared_ptr<Entry> entry)
        : runLoop_(std::move(runLoop)), entry_(std::move(entry)) {}

    ~Timer() override {
        if (const auto runLoop = runLoop_.lock()) {
            (*runLoop)->remove(entry_);
        }
    }

private:
    std::weak_ptr<QtRunLoop*> runLoop_;
    std::shared_ptr<Entry> entry_;
};

QtRunLoop::QtRunLoop()
    : timerDescriptor_(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)),
      notifier_(timerDescriptor_, QSocketNotifier::Read),
      self_(std::make_shared<QtRunLoop*>(this)) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, &mainThread_, [this] { fireDueTimers(); });
    utilityPool_.setMaxThreadCount(maximumUtilityThreads);
    userInitiatedPool_.setMaxThreadCount(maximumUserInitiatedThreads);
    utilityPool_.setExpiryTimeout(threadExpiryMilliseconds);
    userInitiatedPool_.setExpiryTimeout(threadExpiryMilliseconds);
}

QtRunLoop::~QtRunLoop() {
    utilityPool_.clear();
    userInitiatedPool_.clear();
    utilityPool_.waitForDone();
    userInitiatedPool_.waitForDone();
    self_.reset();
    notifier_.setEnabled(false);
    ::close(timerDescriptor_);
}

std::unique_ptr<RunLoopTimer> QtRunLoop::scheduleRepeating(std::chrono::milliseconds period, Task task) {
    assert(period.count() > 0);
    auto entry = std::make_shared<Entry>();
    entry->period = period;
    entry->task = std::move(task);
    entry->due = firstFiringTime(std::chrono::steady_clock::now(), period);
    entries_.push_back(entry);
    arm();
    return std::make_unique<Timer>(self_, std::move(entry));
}

void QtRunLoop::post(Task task) {
    QMetaObject::invokeMethod(
        &mainThread_, [task = std::move(task)] { task(); }, Qt::QueuedConnection);
}

void QtRunLoop::runInBackground(TaskPriority priority, Task task) {
    auto& pool = priority == TaskPriority::utility ? utilityPool_ : userInitiatedPool_;
    pool.start(std::move(task));
}

bool QtRunLoop::finishBackgroundTasks(std::chrono::milliseconds bound) {
    utilityPool_.clear();
    userInitiatedPool_.clear();
    const QDeadlineTimer deadline(bound);
    const bool utilityDone = utilityPool_.waitForDone(static_cast<int>(deadline.remainingTime()));
    return userInitiatedPool_.waitForDone(static_cast<int>(deadline.remainingTime())) && utilityDone;
}

std::optional<MonotonicTime> QtRunLoop::nextTimerWakeUp() const {
    itimerspec remaining{};
    ::timerfd_gettime(timerDescriptor_, &remaining);
    if (remaining.it_value.tv_sec == 0 && remaining.it_value.tv_nsec == 0) {
        return std::nullopt;
    }
    return std::chrono::steady_clock::now() + std::chrono::seconds(remaining.it_value.tv_sec) +
           std::chrono::nanoseconds(remaining.it_value.tv_nsec);
}

void QtRunLoop::fireDueTimers() {
    std::uint64_t expirations = 0;
    if (::read(timerDescriptor_, &expirations, sizeof expirations) != sizeof expirations) {
        return;
    }
    ++timerWakeUps_;
    const auto now = std::chrono::steady_clock::now();
    for (const auto& entry : entries_) {
        if (entry->due <= now) {
            entry->pending = true;
            entry->due = nextFiringTime(now, entry->period);
        }
    }
    // Before running the tasks: one of them may run a nested event loop, in which the other timers keep firing.
    arm();
    runPendingTasks();
    sweep();
}

void QtRunLoop::runPendingTasks() {
    ++firingDepth_;
    // By index, and only existing entries: a task may add timers.
    const std::size_t count = entries_.size();
    for (std::size_t index = 0; index < count; ++index) {
        const auto entry = entries_[index];
        if (entry->live && !entry->running && std::exchange(entry->pending, false)) {
            // Another task of this wake-up may have taken long.
            const auto next = nextFiringTime(std::chrono::steady_clock::now(), entry->period);
            if (next > entry->due) {
                entry->due = next;
                arm();
            }
            entry->running = true;
            entry->task();
            entry->running = false;
            entry->pending = false;  // became due during a nested event loop of the task: missed
        }
    }
    --firingDepth_;
}

void QtRunLoop::remove(const std::shared_ptr<Entry>& entry) {
    entry->live = false;
    needsSweep_ = true;
    sweep();
    arm();
}

void QtRunLoop::sweep() {
    if (firingDepth_ > 0 || !std::exchange(needsSweep_, false)) {
        return;
    }
    // Destroying a task may destroy further timers and re-enter this function; by then the list is consistent.
    std::vector<std::shared_ptr<Entry>> retired;
    const auto dead =
        std::stable_partition(entries_.begin(), entries_.end(), [](const auto& entry) { return entry->live; });
    std::move(dead, entries_.end(), std::back_inserter(retired));
    entries_.erase(dead, entries_.end());
}

void QtRunLoop::arm() {
    itimerspec setting{};
    const Entry* earliest = nullptr;
    for (const auto& entry : entries_) {
        if (entry->live && (earliest == nullptr || entry->due < earliest->due)) {
            earliest = entry.get();
        }
    }
    if (earliest != nullptr) {
        setting.it_value = toTimespec(earliest->due);
    }
    ::timerfd_settime(timerDescriptor_, TFD_TIMER_ABSTIME, &setting, nullptr);
}

}  // namespace kestro
