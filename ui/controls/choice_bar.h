#pragma once

#include "ui/controls/control.h"

#include <vector>

namespace kestro {

/// Base of what shows options side by side, one of them chosen. One stop of the Tab key; the arrows, Home and
/// End choose.
class ChoiceBar : public Control {
    Q_OBJECT

public:
    /// Shows a choice without telling anybody. Silent when equal.
    virtual void setChosen(int index) = 0;
    int chosen() const { return chosen_; }

    /// Called with the index after the user has chosen another option.
    void onChosen(std::function<void(int)> action) { onChosen_ = std::move(action); }

protected:
    /// Whether the mouse chooses as its button goes down, or when it is let go on the same option.
    enum class Trigger { press, release };

    ChoiceBar(int chosen, Trigger trigger, QWidget* parent);

    /// Where the options are, in their order.
    virtual std::vector<QRectF> areas() const = 0;

    /// Makes another index the chosen one and says so to assistive technology.
    void take(int index);

    /// What a user's choice does.
    void choose(int index);

    /// Chooses the option `step` further, as by a key.
    void chooseNext(int step);

    /// The option under the pointer, and the one that was pressed; -1: none.
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
