#pragma once

#include "ui/controls/control.h"

namespace kestro {

/// A switch of its own, 32×18 within a hit area that is 22 high. Rows whose whole width reacts are
/// SettingRow.
class ToggleSwitch : public Control {
    Q_OBJECT

public:
    explicit ToggleSwitch(QWidget* parent = nullptr);

    /// Shows `isOn` without telling anybody; the knob slides. Silent when equal.
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
