#include "ui/controls/transition.h"

#include "ui/theme/motion.h"

#include <QVariantAnimation>

namespace kestro {

Transition::Transition(double initial, std::function<void()> onChange)
    : value_(initial), target_(initial), onChange_(std::move(onChange)) {}

Transition::~Transition() = default;

void Transition::reset(double value) {
    stop();
    value_ = value;
    target_ = value;
}

void Transition::moveTo(double target, std::chrono::milliseconds duration) {
    if (target == target_) {
        return;
    }
    target_ = target;
    stop();
    const int milliseconds = motion::duration(duration);
    if (milliseconds <= 0) {
        value_ = target;
        onChange_();
        return;
    }
    animation_ = std::make_unique<QVariantAnimation>();
    animation_->setDuration(milliseconds);
    animation_->setEasingCurve(QEasingCurve::OutCubic);
    animation_->setStartValue(value_);
    animation_->setEndValue(target);
    QObject::connect(animation_.get(), &QVariantAnimation::valueChanged, animation_.get(),
                     [this](const QVariant& value) {
                         value_ = value.toDouble();
                         onChange_();
                     });
    QObject::connect(animation_.get(), &QVariantAnimation::finished, animation_.get(),
                     [this] { animation_.release()->deleteLater(); });
    animation_->start();
}

void Transition::stop() {
    if (animation_) {
        // This may run from the animation's own signal, so deletion is deferred.
        animation_->disconnect();
        animation_->stop();
        animation_.release()->deleteLater();
    }
}

}  // namespace kestro
