#include "platform/simulated/simulated_run_loop.h"

#include <algorithm>
#include <cassert>

namespace kestro {

struct SimulatedRunLoop::TimerState {
    MonotonicTime due;
    std::chrono::milliseconds period;
    Task task;
};

struct SimulatedRunLoop::TimerList {
    std::vector<std::shared_ptr<TimerState>> running;
};

class SimulatedRunLoop::Timer final : public RunLoopTimer {
public:
    Timer(std::shared_ptr<TimerList> list, std::shared_ptr<TimerState> state)
        : list_(std::move(list)), state_(std::move(state)) {}
    ~Timer() override { std::erase(list_->running, state_); }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

private:
    std::shared_ptr<TimerList> list_;
    std::shared_ptr<TimerState> state_;
};

SimulatedRunLoop::SimulatedRunLoop(SimulatedClock& clock)
    : clock_(clock), timers_(std::make_shared<TimerList>()) {}

SimulatedRunLoop::~SimulatedRunLoop() = default;

std::unique_ptr<RunLoopTimer> SimulatedRunLoop::scheduleRepeating(std::chrono::milliseconds period, Task task) {
    assert(period > std::chrono::milliseconds::zero());
    ++scheduledTimers_;
    auto state = std::make_shared<TimerState>(TimerState{clock_.monotonicNow() + period, period, std::move(task)});
    timers_->running.push_back(state);
    return std::make_unique<Timer>(timers_, std::move(state));
}

void SimulatedRunLoop::post(Task task) {
    tasks_.push_back(std::move(task));
}

void SimulatedRunLoop::runInBackground(TaskPriority priority, Task task) {
    ++(priority == TaskPriority::utility ? startedUtility_ : startedUserInitiated_);
    (holdsBackgroundTasks_ ? held_ : tasks_).push_back(std::move(task));
}

void SimulatedRunLoop::advance(std::chrono::nanoseconds duration) {
    const MonotonicTime end = clock_.monotonicNow() + duration;
    runPending();
    while (const auto timer = nextDueBy(end)) {
        clock_.turn(timer->due - clock_.monotonicNow());
        timer->due += timer->period;
        timer->task();
        runPending();
    }
    clock_.turn(end - clock_.monotonicNow());
}

void SimulatedRunLoop::runPending() {
    while (!tasks_.empty()) {
        const Task task = std::move(tasks_.front());
        tasks_.pop_front();
        task();
    }
}

void SimulatedRunLoop::releaseBackgroundTasks() {
    holdsBackgroundTasks_ = false;
    while (!held_.empty()) {
        finishBackgroundTask(0);
    }
}

void SimulatedRunLoop::finishBackgroundTask(std::size_t index) {
    assert(index < held_.size());
    const Task task = std::move(held_[index]);
    held_.erase(held_.begin() + static_cast<std::ptrdiff_t>(index));
    task();
    runPending();
}

std::int64_t SimulatedRunLoop::startedBackgroundTasks(TaskPriority priority) const {
    return priority == TaskPriority::utility ? startedUtility_ : startedUserInitiated_;
}

std::vector<std::chrono::milliseconds> SimulatedRunLoop::timerPeriods() const {
    std::vector<std::chrono::milliseconds> periods;
    for (const auto& timer : timers_->running) {
        periods.push_back(timer->period);
    }
    return periods;
}

std::shared_ptr<SimulatedRunLoop::TimerState> SimulatedRunLoop::nextDueBy(MonotonicTime moment) const {
    // Of timers due together, the oldest fires first.
    const auto next = std::ranges::min_element(timers_->running, {}, [](const auto& timer) { return timer->due; });
    return next != timers_->running.end() && (*next)->due <= moment ? *next : nullptr;
}

}  // namespace kestro
