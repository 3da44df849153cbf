#include "ui/controls/toggle_switch.h"

#include "ui/controls/indicators.h"
#include "ui/theme/motion.h"

#include <QPainter>

namespace kestro {

ToggleSwitch::ToggleSwitch(QWidget* parent) : Control(parent), knob_(0, [this] { update(); }) {
    setCheckable(QAccessible::CheckBox);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ToggleSwitch::sizeHint() const {
    return {static_cast<int>(switchWidth), 22};
}

QRectF ToggleSwitch::focusArea() const {
    return {0, (height() - switchHeight) / 2, switchWidth, switchHeight};
}

double ToggleSwitch::focusRadius() const {
    return switchHeight / 2;
}

void ToggleSwitch::paint(QPainter& painter) {
    paintSwitch(painter, focusArea(), {knob_.value(), hovering(), pressing()});
}

void ToggleSwitch::stateDidChange() {
    knob_.moveTo(isOn() ? 1 : 0, isVisible() ? motion::slide : motion::none);
}

}  // namespace kestro
