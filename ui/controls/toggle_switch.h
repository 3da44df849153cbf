#pragma once

#include "ui/controls/control.h"

namespace kestro {

/// A standalone switch, 32×18 within a click area that is 22 high. Use SettingRow for rows that respond over their
/// whole width.
class ToggleSwitch : public Control {
    Q_OBJECT

public:
    explicit ToggleSwitch(QWidget* parent = nullptr);

    /// Sets `isOn` without notifying; the knob slides. No-op when unchanged.
    void setOn(bool isOn);
    bool isOn() const { return isOn_; }

    /// Called with the new state after the user has changed it.
    void onToggled(std::function<void(bool)> action) { onToggled_ = std::move(action); }

    QSize sizeHint() const override;
    QRectF focusArea() const override;
    double focusRadius() const override;
    AccessibleInfo accessibleInfo() const override;

protected:
    void paint(QPainter& painter) override;
    void activated() override;

private:
    bool isOn_ = false;
    Transition knob_;
    std::function<void(bool)> onToggled_;
};

}  // namespace kestro
