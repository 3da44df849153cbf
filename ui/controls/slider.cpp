#include "ui/controls/slider.h"

#include "ui/paint/surface_paint.h"
#include "ui/theme/color_mix.h"
#include "ui/theme/kestro_theme.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double knobDiameter = 14;
constexpr double trackHeight = 3;
constexpr double hoverGrowth = 0.14;
constexpr double pressedShade = 0.14;
constexpr int pageSteps = 5;
constexpr double trackOpacity = 0.10;

/// The knob grows when hovered; it must stay inside the slider.
constexpr double knobRoom = knobDiameter / 2;

}  // namespace

double SliderRange::nearest(double value) const {
    if (!(maximum > minimum) || std::isnan(value)) {
        return minimum;
    }
    const double inside = within(value);
    if (step <= 0) {
        return inside;
    }
    const double onStep = std::min(minimum + std::round((inside - minimum) / step) * step, maximum);
    return maximum - inside < std::abs(inside - onStep) ? maximum : onStep;
}

double SliderRange::within(double value) const {
    return maximum > minimum && !std::isnan(value) ? std::clamp(value, minimum, maximum) : minimum;
}

double SliderRange::stepped(double value, int steps) const {
    if (step <= 0) {
        return within(value);
    }
    constexpr double tolerance = 1e-9;  // sums of steps are rarely exact
    const double place = (within(value) - minimum) / step;
    const double from = steps > 0 ? std::floor(place + tolerance) : std::ceil(place - tolerance);
    return within(minimum + (from + steps) * step);
}

double SliderRange::fraction(double value) const {
    return maximum > minimum ? std::clamp((value - minimum) / (maximum - minimum), 0.0, 1.0) : 0;
}

double sliderKnobX(const SliderRange& range, double value, double width) {
    return knobRoom + range.fraction(value) * std::max(0.0, width - 2 * knobRoom);
}

double sliderValueAt(const SliderRange& range, double x, double width) {
    const double travel = std::max(1.0, width - 2 * knobRoom);
    return range.nearest(range.minimum + (x - knobRoom) / travel * (range.maximum - range.minimum));
}

Slider::Slider(const SliderRange& range, QWidget* parent)
    : Control(parent), range_(range), shown_(range.minimum), value_(range.minimum) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Slider::setValue(double value) {
    if (value != shown_) {
        shown_ = value;
        value_ = range_.within(value);
        announceValue();
        moveFocusRing();
        update();
    }
}

void Slider::setRange(const SliderRange& range) {
    if (range != range_) {
        range_ = range;
        value_ = range_.within(shown_);
        moveFocusRing();
        update();
    }
}

QSize Slider::sizeHint() const {
    return {120, fixedHeight};
}

QSize Slider::minimumSizeHint() const {
    return {40, fixedHeight};
}

QRectF Slider::focusArea() const {
    return knob();
}

double Slider::focusRadius() const {
    return knobDiameter / 2;
}

AccessibleInfo Slider::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    info.role = QAccessible::Slider;
    info.value = valueText_ ? valueText_(shown_) : QString::number(shown_);
    auto* self = const_cast<Slider*>(this);
    info.range = AccessibleRange{value_, range_.minimum, range_.maximum, range_.step,
                                 [self](double value) { self->choose(value); }};
    return info;
}

void Slider::paint(QPainter& painter) {
    const double middle = height() / 2.0;
    const QRectF track(0, middle - trackHeight / 2, width(), trackHeight);
    const QRectF handle = knob();
    const double filled = handle.center().x() / std::max(1, width());
    paintBar(painter, track, filled, Ink::white(trackOpacity).color(), KestroTheme::accentCool());
    const double growth = knobDiameter * hoverGrowth * hovering() * (1 - pressing()) / 2;
    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed(QColor::fromRgbF(0.95F, 0.96F, 0.97F), Qt::black, pressedShade * pressing()));
    painter.drawEllipse(handle.adjusted(-growth, -growth, growth, growth));
}

void Slider::mousePressEvent(QMouseEvent* event) {
    Control::mousePressEvent(event);
    if (event->button() == Qt::LeftButton) {
        choose(sliderValueAt(range_, event->position().x(), width()));
    }
}

void Slider::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() & Qt::LeftButton) {
        choose(sliderValueAt(range_, event->position().x(), width()));
    }
}

void Slider::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Left:
        case Qt::Key_Down:
            choose(range_.stepped(value_, -1));
            break;
        case Qt::Key_Right:
        case Qt::Key_Up:
            choose(range_.stepped(value_, 1));
            break;
        case Qt::Key_PageDown:
            choose(range_.stepped(value_, -pageSteps));
            break;
        case Qt::Key_PageUp:
            choose(range_.stepped(value_, pageSteps));
            break;
        case Qt::Key_Home:
            choose(range_.minimum);
            break;
        case Qt::Key_End:
            choose(range_.maximum);
            break;
        default:
            event->ignore();
            return;
    }
    showFocus();
}

void Slider::choose(double value) {
    const double chosen = range_.nearest(value);
    if (chosen == shown_) {
        return;
    }
    setValue(chosen);
    if (onChanged_) {
        onChanged_(value_);
    }
}

QRectF Slider::knob() const {
    return {sliderKnobX(range_, value_, width()) - knobDiameter / 2, (height() - knobDiameter) / 2, knobDiameter,
            knobDiameter};
}

}  // namespace kestro
