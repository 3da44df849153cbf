#include "app/windows/frame_animation.h"

#include "ui/theme/motion.h"

#include <QGuiApplication>
#include <QWidget>

#include <algorithm>
#include <chrono>

namespace kestro {

namespace {

using namespace std::chrono_literals;

constexpr auto lastEcho = motion::window + 400ms;

/// By then a window manager has answered the last step.
constexpr auto settlingTime = 120ms;

bool isBetween(int value, int one, int other) {
    return value >= std::min(one, other) && value <= std::max(one, other);
}

}  // namespace

FrameAnimation::FrameAnimation(QWidget& window) : window_(window) {
    animation_.setEasingCurve(QEasingCurve::InOutCubic);
    QObject::connect(&animation_, &QVariantAnimation::valueChanged, &window_,
                     [this](const QVariant& value) { step(value.toRect()); });
    settling_.setSingleShot(true);
    QObject::connect(&animation_, &QVariantAnimation::finished, &window_,
                     [this] { settling_.start(settlingTime); });
    QObject::connect(&settling_, &QTimer::timeout, &window_, [this] { settle(); });
}

void FrameAnimation::start(const QRect& target) {
    stop();
    from_ = window_.size();
    to_ = target.size();
    screen_ = window_.screen();
    sinceStart_.start();
    const int duration = motion::duration(motion::window);
    if (duration == 0 || !window_.isVisible() || window_.geometry() == target) {
        window_.setGeometry(target);
        return;
    }
    animation_.setDuration(duration);
    animation_.setStartValue(window_.geometry());
    animation_.setEndValue(target);
    animation_.start();
}

void FrameAnimation::stop() {
    animation_.stop();
    settling_.stop();
}

void FrameAnimation::finish() {
    const QRect target = isElsewhere() ? window_.geometry() : frame();
    stop();
    window_.setGeometry(target);
}

QRect FrameAnimation::frame() const {
    const bool isMoving = animation_.state() == QAbstractAnimation::Running;
    return isMoving ? animation_.endValue().toRect() : window_.geometry();
}

bool FrameAnimation::isElsewhere() const {
    const QScreen* shown = window_.screen();
    return shown != screen_ && shown != QGuiApplication::screenAt(animation_.endValue().toRect().center());
}

void FrameAnimation::step(const QRect& frame) {
    if (isElsewhere()) {
        stop();
        window_.resize(to_);
    } else {
        window_.setGeometry(frame);
    }
}

void FrameAnimation::settle() {
    const QRect target = animation_.endValue().toRect();
    if (window_.size() == target.size() && !isElsewhere()) {
        window_.setGeometry(target);
    }
}

bool FrameAnimation::explains(const QSize& size) const {
    return sinceStart_.isValid() && !sinceStart_.hasExpired(lastEcho.count()) &&
           isBetween(size.width(), from_.width(), to_.width()) &&
           isBetween(size.height(), from_.height(), to_.height());
}

}  // namespace kestro
