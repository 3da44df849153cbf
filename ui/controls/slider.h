#pragma once

#include "ui/controls/control.h"

namespace kestro {

/// The values of a slider: from `minimum` to `maximum` in steps counted from `minimum`.
struct SliderRange {
    double minimum = 0;
    double maximum = 1;
    double step = 1;

    /// The nearest value of the range. The maximum counts as one even when it is not a whole number of steps away.
    /// An empty range has only its minimum.
    double nearest(double value) const;

    /// `value` clamped to the range, without rounding to a step.
    double within(double value) const;

    /// `value` moved by `steps`, backward if negative. Between two steps, the first move goes to the nearer step
    /// in that direction. Clamped to the range.
    double stepped(double value, int steps) const;

    /// The position of a value, 0..1.
    double fraction(double value) const;

    friend bool operator==(const SliderRange&, const SliderRange&) = default;
};

/// The x of the knob's centre in a slider of `width`, and the value under a pointer at `x`.
double sliderKnobX(const SliderRange& range, double value, double width);
double sliderValueAt(const SliderRange& range, double x, double width);

/// A slider with a thin track and a white knob; its click area is 22 high. Arrows move one step, Page keys five,
/// Home and End to the ends. The wheel is ignored, so that scrolling past changes no setting.
class Slider : public Control {
    Q_OBJECT

public:
    static constexpr int fixedHeight = 22;

    explicit Slider(const SliderRange& range, QWidget* parent = nullptr);

    /// Shows a value without notifying. For a value beyond the range the knob is at that end, but the actual value
    /// is spoken; the user can still set the end itself. No-op when unchanged.
    void setValue(double value);

    /// The knob's value: the shown value, clamped to the range.
    double value() const { return value_; }

    /// Moves the knob to the shown value's position in the new range.
    void setRange(const SliderRange& range);
    const SliderRange& range() const { return range_; }

    /// Called with each new value while the user moves the knob.
    void onChanged(std::function<void(double)> action) { onChanged_ = std::move(action); }

    /// Formats the spoken value, such as "20%".
    void setValueText(std::function<QString(double)> format) { valueText_ = std::move(format); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    QRectF focusArea() const override;
    double focusRadius() const override;
    AccessibleInfo accessibleInfo() const override;

protected:
    void paint(QPainter& painter) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void choose(double value);
    QRectF knob() const;

    SliderRange range_;
    double shown_;  ///< as set, possibly beyond the range
    double value_;
    std::function<void(double)> onChanged_;
    std::function<QString(double)> valueText_;
};

}  // namespace kestro
