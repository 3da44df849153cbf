#include "platform/desktop/qt_run_loop.h"

#include <QDeadlineTimer>
#include <QMetaObject>

#include <sys/timerfd.h>
#include <unistd.h>

#include <utility>

namespace kestro {

namespace {

constexpr int maximumUtilityThreads = 2;
constexpr int maximumUserInitiatedThreads = 4;
constexpr int threadExpiryMilliseconds = 9'000;

timespec toTimespec(MonotonicTime time) {
    const auto sinceOrigin = time.time_since_epoch();
    const auto seconds = std::chrono::floor<std::chrono::seconds>(sinceOrigin);
    return {static_cast<time_t>(seconds.count()),
            static_cast<long>(std::chrono::nanoseconds(sinceOrigin - seconds).count())};
}

}  // namespace

QtRunLoop::QtRunLoop()
    : timerDescriptor_(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)),
      notifier_(timerDescriptor_, QSocketNotifier::Read),
      timers_([] { return std::chrono::steady_clock::now(); },
              [this](std::optional<MonotonicTime> next) { arm(next); }) {
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
    notifier_.setEnabled(false);
    ::close(timerDescriptor_);
}

std::unique_ptr<RunLoopTimer> QtRunLoop::scheduleRepeating(std::chrono::milliseconds period, Task task) {
    return timers_.add(period, std::move(task));
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
    timers_.collectDue();
    timers_.runDue();
}

void QtRunLoop::arm(std::optional<MonotonicTime> next) {
    itimerspec setting{};
    if (next) {
        setting.it_value = toTimespec(*next);
    }
    ::timerfd_settime(timerDescriptor_, TFD_TIMER_ABSTIME, &setting, nullptr);
}

}  // namespace kestro
