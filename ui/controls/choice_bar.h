#pragma once

#include "ui/controls/control.h"

#include <vector>

namespace kestro {

/// Base of controls that show options side by side with one chosen. A single Tab stop; the arrows, Home and End
/// choose.
class ChoiceBar : public Control {
    Q_OBJECT

public:
    /// Changes the selection without notifying. No-op when unchanged.
    virtual void setChosen(int index) = 0;
    int chosen() const { return chosen_; }

    /// Called with the index after the user has chosen another option.
    void onChosen(std::function<void(int)> action) { onChosen_ = std::move(action); }

protected:
    /// Whether the mouse chooses on press, or on release over the same option.
    enum class Trigger { press, release };

    ChoiceBar(int chosen, Trigger trigger, QWidget* parent);

    /// The areas of the options, in order.
    virtual std::vector<QRectF> areas() const = 0;

    /// Selects another index and announces it to assistive technology.
    void take(int index);

    /// Handles a choice made by the user.
    void choose(int index);

    /// Chooses the option `step` places further, as a key does.
    void chooseNext(int step);

    /// The options under the pointer and under the pressed button; -1: none.
    int hovered() const { return hovered_; }
    int pressed() const { return pressed_; }

    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    int indexAt(const QPointF& position) const;

    int chosen_;
    Trigger trigger_;
    int hovered_ = -1;
    int pressed_ = -1;
    std::function<void(int)> onChosen_;
};

}  // namespace kestro
