#include "platform/posix/timer_schedule.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>

namespace kestro {

namespace {

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

struct TimerSchedule::Entry {
    std::chrono::milliseconds period;
    RunLoop::Task task;
    MonotonicTime due;
    bool live = true;
    bool pending = false;  // due, but its task has not started yet
    bool running = false;
};

class TimerSchedule::Timer final : public RunLoopTimer {
public:
    Timer(std::weak_ptr<TimerSchedule*> schedule, std::shared_ptr<Entry> entry)
        : schedule_(std::move(schedule)), entry_(std::move(entry)) {}

    ~Timer() override {
        if (const auto schedule = schedule_.lock()) {
            (*schedule)->remove(entry_);
        }
    }

private:
    std::weak_ptr<TimerSchedule*> schedule_;
    std::shared_ptr<Entry> entry_;
};

TimerSchedule::TimerSchedule(Now now, Arm arm)
    : now_(std::move(now)), arm_(std::move(arm)), self_(std::make_shared<TimerSchedule*>(this)) {}

TimerSchedule::~TimerSchedule() {
    self_.reset();
}

std::unique_ptr<RunLoopTimer> TimerSchedule::add(std::chrono::milliseconds period, RunLoop::Task task) {
    assert(period.count() > 0);
    auto entry = std::make_shared<Entry>();
    entry->period = period;
    entry->task = std::move(task);
    entry->due = firstFiringTime(now_(), period);
    entries_.push_back(entry);
    arm();
    return std::make_unique<Timer>(self_, std::move(entry));
}

void TimerSchedule::collectDue() {
    collectDueBy(now_());
}

void TimerSchedule::collectAll() {
    collectDueBy(MonotonicTime::max());
}

void TimerSchedule::collectDueBy(MonotonicTime limit) {
    const auto now = now_();
    for (const auto& entry : entries_) {
        if (entry->due <= limit) {
            entry->pending = true;
            entry->due = nextFiringTime(now, entry->period);
        }
    }
    arm();
}

void TimerSchedule::runDue() {
    ++firingDepth_;
    // By index, and only existing entries: a task may add timers.
    const std::size_t count = entries_.size();
    for (std::size_t index = 0; index < count; ++index) {
        const auto entry = entries_[index];
        if (entry->live && !entry->running && std::exchange(entry->pending, false)) {
            // Another task of this wake-up may have taken long.
            const auto next = nextFiringTime(now_(), entry->period);
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
    sweep();
}

std::optional<std::chrono::milliseconds> TimerSchedule::shortestPeriod() const {
    std::optional<std::chrono::milliseconds> shortest;
    for (const auto& entry : entries_) {
        if (entry->live && (!shortest || entry->period < *shortest)) {
            shortest = entry->period;
        }
    }
    return shortest;
}

void TimerSchedule::remove(const std::shared_ptr<Entry>& entry) {
    entry->live = false;
    needsSweep_ = true;
    sweep();
    arm();
}

void TimerSchedule::sweep() {
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

void TimerSchedule::arm() const {
    std::optional<MonotonicTime> earliest;
    for (const auto& entry : entries_) {
        if (entry->live && (!earliest || entry->due < *earliest)) {
            earliest = entry->due;
        }
    }
    arm_(earliest);
}

}  // namespace kestro
