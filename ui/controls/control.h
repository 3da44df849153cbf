#pragma once

#include "ui/controls/ink.h"
#include "ui/controls/transition.h"
#include "ui/controls/view.h"

#include <functional>

class QPainter;

namespace kestro {

/// The opacities of a fill at rest, under the pointer and pressed.
struct StateOpacity {
    double rest = 0;
    double hover = 0;
    double pressed = 0;

    /// The opacity while the transitions to hover and pressed have come `hovering` and `pressing` (0..1) far.
    double at(double hovering, double pressing) const;
};

/// Base of everything that reacts to the user: hover, pressed, disabled and keyboard focus, with their
/// motions. A click, Space and Enter activate it. The focus ring is shown only when the focus came from the
/// keyboard. Main thread.
class Control : public View {
    Q_OBJECT

public:
    explicit Control(QWidget* parent = nullptr);

    /// Called when the user activates the control, after its own state has changed.
    void onClick(std::function<void()> action) { onClick_ = std::move(action); }

    /// Does what a click does.
    void click();

    bool showsFocus() const { return showsFocus_; }

    /// Where the focus ring goes round, in the control's coordinates, and its corner radius.
    virtual QRectF focusArea() const;
    virtual double focusRadius() const { return 6; }

    AccessibleInfo accessibleInfo() const override;

protected:
    /// Paints at full opacity; a disabled control is dimmed as a whole.
    virtual void paint(QPainter& painter) = 0;

    /// Changes the control's own state on activation, before the click is told.
    virtual void activated() {}

    /// What is the target of the pointer; clicks outside it are ignored.
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

    /// Ends a press without a click, as when the pointer begins to drag.
    void cancelPress();

    /// To be called when focusArea has changed.
    void moveFocusRing();

    /// To be called when a key was used, which shows the ring wherever the focus came from.
    void showFocus() { setShowsFocus(true); }

private:
    void setShowsFocus(bool shows);

    std::function<void()> onClick_;
    Transition hover_;
    Transition press_;
    bool showsFocus_ = false;
};

/// Opacity of a disabled control.
inline constexpr double kDisabledOpacity = 0.38;

}  // namespace kestro
