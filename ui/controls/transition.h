#pragma once

#include <chrono>
#include <functional>
#include <memory>

class QVariantAnimation;

namespace kestro {

/// A number that moves to its target with an OutCubic easing and tells `onChange` at each step. Nothing is
/// allocated while it rests. Main thread; stops when it dies.
class Transition {
public:
    Transition(double initial, std::function<void()> onChange);
    ~Transition();
    Transition(const Transition&) = delete;
    Transition& operator=(const Transition&) = delete;

    double value() const { return value_; }
    double target() const { return target_; }

    /// Is at `value` now, without moving and without telling.
    void reset(double value);

    /// Moves to `target`; at once when the duration comes to 0. The current target again does nothing.
    void moveTo(double target, std::chrono::milliseconds duration);

private:
    void stop();

    double value_;
    double target_;
    std::function<void()> onChange_;
    std::unique_ptr<QVariantAnimation> animation_;
};

}  // namespace kestro
