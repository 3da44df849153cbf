#pragma once

#include "ui/controls/transition.h"
#include "ui/controls/view.h"
#include "ui/paint/focus_ring.h"
#include "ui/paint/ink.h"

#include <functional>
#include <optional>

class QPainter;

namespace kestro {

/// The opacities of a fill at rest, hovered and pressed.
struct StateOpacity {
    double rest = 0;
    double hover = 0;
    double pressed = 0;

    /// The opacity while the hover and press transitions are at `hovering` and `pressing` (0..1).
    double at(double hovering, double pressing) const;
};

/// Base of all interactive views: animated hover, pressed, disabled and keyboard-focus states. A click, Space and
/// Enter activate it. The focus ring shows only when the focus came from the keyboard. Main thread.
class Control : public View, public FocusRingTarget {
    Q_OBJECT

public:
    explicit Control(QWidget* parent = nullptr);

    /// Called when the user activates the control, after its own state has changed.
    void onClick(std::function<void()> action) { onClick_ = std::move(action); }

    /// The same, with the new state of a control that switches itself.
    void onToggled(std::function<void(bool)> action);

    /// Activates the control like a click.
    void click();

    /// On: pinned, switched on, chosen. Once set, the control is announced as checkable. Runs no action. No-op
    /// when unchanged.
    void setOn(bool isOn);
    bool isOn() const { return on_.value_or(false); }

    /// Enables or disables the control. While it has the focus, it keeps it and is only inert: Qt would pass the
    /// focus to a neighbour, which a further Space would activate.
    void setAvailable(bool isAvailable);
    bool isAvailable() const { return isAvailable_; }

    bool showsFocus() const { return showsFocus_; }

    /// The rectangle that the focus ring surrounds, in the control's coordinates, and its corner radius.
    QRectF focusArea() const override;
    double focusRadius() const override { return 6; }

    AccessibleInfo accessibleInfo() const override;

protected:
    /// Paints in design points at full opacity; a disabled control is then dimmed as a whole.
    virtual void paint(QPainter& painter) = 0;

    /// How assistive technology announces the control; a button unless set.
    void setRole(QAccessible::Role role) { role_ = role; }

    /// Makes the control checkable, with a role for it, before its state is first set.
    void setCheckable(QAccessible::Role role);

    /// Changes the control's own state on activation, before `onClick` runs.
    virtual void activated() {}

    /// Called when `isOn` has changed.
    virtual void stateDidChange() { update(); }

    /// Whether `position` is part of the click target; clicks elsewhere are ignored.
    virtual bool hitTest(const QPoint& position) const { return rect().contains(position); }

    double hovering() const { return hover_.value(); }
    double pressing() const { return press_.value(); }
    double opacity(const StateOpacity& opacities) const { return opacities.at(hovering(), pressing()); }

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;

    /// Cancels a press without a click, for example when a drag starts.
    void cancelPress();

    /// Call when focusArea has changed.
    void moveFocusRing();

    /// Call when a key was used: shows the ring wherever the focus came from.
    void showFocus() { setShowsFocus(true); }

private:
    void setShowsFocus(bool shows);
    void endHoverAndPress();

    std::function<void()> onClick_;
    QAccessible::Role role_ = QAccessible::Button;
    std::optional<bool> on_;
    Transition hover_;
    Transition press_;
    bool showsFocus_ = false;
    bool isAvailable_ = true;
};

/// Opacity of a disabled control.
inline constexpr double disabledOpacity = 0.38;

}  // namespace kestro
