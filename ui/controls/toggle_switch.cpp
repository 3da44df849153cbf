#include "ui/controls/toggle_switch.h"

#include "ui/controls/indicators.h"
#include "ui/theme/motion.h"

#include <QPainter>

namespace kestro {

ToggleSwitch::ToggleSwitch(QWidget* parent) : Control(parent), knob_(0, [this] { update(); }) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void ToggleSwitch::setOn(bool isOn) {
    if (isOn == isOn_) {
        return;
    }
    isOn_ = isOn;
    announceChecked();
    if (isVisible()) {
        knob_.moveTo(isOn ? 1 : 0, motion::slide);
    } else {
        knob_.reset(isOn ? 1 : 0);
    }
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

AccessibleInfo ToggleSwitch::accessibleInfo() const {
    AccessibleInfo info = Control::accessibleInfo();
    info.role = QAccessible::CheckBox;
    info.checked = isOn_;
    return info;
}

void ToggleSwitch::paint(QPainter& painter) {
    paintSwitch(painter, focusArea(), {knob_.value(), hovering(), pressing()});
}

void ToggleSwitch::activated() {
    setOn(!isOn_);
    // A copy, since the action may destroy this control.
    if (const auto onToggled = onToggled_) {
        onToggled(isOn_);
    }
}

}  // namespace kestro
