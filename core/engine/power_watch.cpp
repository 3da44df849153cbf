#include "core/engine/power_watch.h"

#include "core/platform/platform.h"
#include "core/platform/power_events.h"
#include "core/platform/run_loop.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>

namespace kestro {

namespace {

constexpr auto period = std::chrono::seconds(30);

}  // namespace

PowerWatch::PowerWatch(const Platform& platform, std::function<void()> sample)
    : platform_(platform), sample_(std::move(sample)) {}

PowerWatch::~PowerWatch() = default;

void PowerWatch::setReason(Reason reason, bool exists) {
    bool& current = reasons_.at(static_cast<std::size_t>(reason));
    if (current == exists) {
        return;
    }
    current = exists;
    if (std::ranges::none_of(reasons_, std::identity())) {
        timer_.reset();
        events_.reset();
        return;
    }
    if (!timer_) {
        timer_ = platform_.runLoop.scheduleRepeating(period, [this] { sample_(); });
        events_ = platform_.powerEvents.watch([this] { sample_(); });
    }
    if (exists) {
        postSample();
    }
}

/// Deferred: the caller may be inside a notification.
void PowerWatch::postSample() {
    if (std::exchange(isPosted_, true)) {
        return;
    }
    platform_.runLoop.post([this, life = lifetime_.watch()] {
        if (life.expired()) {
            return;
        }
        isPosted_ = false;
        if (timer_) {
            sample_();
        }
    });
}

}  // namespace kestro
