#pragma once

#include "ui/controls/control.h"

namespace kestro {

/// A standalone switch, 32×18 within a click area that is 22 high; its knob slides. Use SettingRow for rows that
/// respond over their whole width.
class ToggleSwitch : public Control {
    Q_OBJECT

public:
    explicit ToggleSwitch(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QRectF focusArea() const override;
    double focusRadius() const override;

protected:
    void paint(QPainter& painter) override;
    void activated() override { setOn(!isOn()); }
    void stateDidChange() override;

private:
    Transition knob_;
};

}  // namespace kestro
