#pragma once

#include "ui/controls/control.h"

namespace kestro {

/// The values that a slider can take: from `minimum` to `maximum` in steps counted from `minimum`.
struct SliderRange {
    double minimum = 0;
    double maximum = 1;
    double step = 1;

    /// The nearest value of the range; the maximum counts as one even where no step meets it. A range without
    /// room has only its minimum.
    double nearest(double value) const;

    /// `value` brought between the ends, off the steps as it may be.
    double within(double value) const;

    /// The value `steps` further, or back where negative; from between two steps the nearer of them in that
    /// direction is the first. Never beyond an end.
    double stepped(double value, int steps) const;

    /// The position of a value, 0..1.
    double fraction(double value) const;

    friend bool operator==(const SliderRange&, const SliderRange&) = default;
};

/// Where the knob's centre may go in a slider of `width`, and the value under a pointer at `x`.
double sliderKnobX(const SliderRange& range, double value, double width);
double sliderValueAt(const SliderRange& range, double x, double width);

/// A slider: a thin track, a white knob, 22 high to be hit. Arrows go one step, Page keys five, Home and End
/// to the ends; the wheel does nothing, so that scrolling past changes no setting.
class Slider : public Control {
    Q_OBJECT

public:
    static constexpr int kHeight = 22;

    explicit Slider(const SliderRange& range, QWidget* parent = nullptr);

    /// Shows a value without telling anybody. One beyond the range has the knob at that end and is spoken as
    /// it is; the user can still set the end itself. Silent when equal.
    void setValue(double value);

    /// Where the knob is: the shown value, within the range.
    double value() const { return value_; }

    /// The knob moves to where the shown value is in the new range.
    void setRange(const SliderRange& range);
    const SliderRange& range() const { return range_; }

    /// Called with each new value while the user moves the knob.
    void onChanged(std::function<void(double)> action) { onChanged_ = std::move(action); }

    /// The spoken form of a value, such as "20%".
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
    double shown_;  ///< as it was set, even beyond the range
    double value_;
    std::function<void(double)> onChanged_;
    std::function<QString(double)> valueText_;
};

}  // namespace kestro
