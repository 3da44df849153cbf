#pragma once

#include <chrono>
#include <functional>
#include <memory>

class QVariantAnimation;

namespace kestro {

/// A number that animates to its target with OutCubic easing and calls `onChange` at each step. Allocates nothing
/// while at rest. Main thread; destruction stops it.
class Transition {
public:
    Transition(double initial, std::function<void()> onChange);
    ~Transition();
    Transition(const Transition&) = delete;
    Transition& operator=(const Transition&) = delete;

    double value() const { return value_; }
    double target() const { return target_; }

    /// Jumps to `value` without animating or notifying.
    void reset(double value);

    /// Animates to `target`, or jumps if the duration is 0. No-op for the current target.
    void moveTo(double target, std::chrono::milliseconds duration);

private:
    void stop();

    double value_;
    double target_;
    std::function<void()> onChange_;
    std::unique_ptr<QVariantAnimation> animation_;
};

}  // namespace kestro
