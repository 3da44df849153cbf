#include "ui/controls/control.h"

#include "ui/paint/focus_ring.h"
#include "ui/paint/zoom.h"
#include "ui/theme/motion.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QPointer>

namespace kestro {

double StateOpacity::at(double hovering, double pressing) const {
    const double raised = rest + (hover - rest) * hovering;
    return raised + (pressed - raised) * pressing;
}

Control::Control(QWidget* parent)
    : View(parent), hover_(0, [this] { update(); }), press_(0, [this] { update(); }) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
}

void Control::onToggled(std::function<void(bool)> action) {
    onClick([this, action = std::move(action)] { action(isOn()); });
}

void Control::click() {
    if (!isAvailable_) {
        return;
    }
    const QPointer<Control> self(this);
    activated();
    if (self && onClick_) {
        // The action may destroy this control.
        const auto action = onClick_;
        action();
    }
}

void Control::setOn(bool isOn) {
    if (on_ != isOn) {
        on_ = isOn;
        announceChecked();
        stateDidChange();
    }
}

void Control::setAvailable(bool isAvailable) {
    if (isAvailable == isAvailable_) {
        return;
    }
    isAvailable_ = isAvailable;
    const bool keepsFocus = window()->focusWidget() == this;
    setEnabled(isAvailable || keepsFocus);
    if (keepsFocus) {
        QAccessible::State changed;
        changed.disabled = true;
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
        endHoverAndPress();
        update();
    }
}

void Control::setCheckable(QAccessible::Role role) {
    role_ = role;
    on_ = isOn();
}

QRectF Control::focusArea() const {
    return rect();
}

AccessibleInfo Control::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    info.role = role_;
    info.checked = on_;
    info.name = accessibleName().isEmpty() ? help() : accessibleName();
    info.press = [control = QPointer<Control>(const_cast<Control*>(this))] {
        if (control) {
            control->click();
        }
    };
    return info;
}

bool Control::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::HoverEnter:
            hover_.moveTo(isEnabled() && isAvailable_ ? 1 : 0, motion::hover);
            break;
        case QEvent::HoverLeave:
        case QEvent::Hide:
            hover_.moveTo(0, motion::hover);
            press_.moveTo(0, motion::press);
            break;
        default:
            break;
    }
    return View::event(event);
}

void Control::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isEnabled() && isAvailable_) {
        paintInDesignPoints(painter, *this);
        paint(painter);
        return;
    }
    // Dimmed as one image: its layers must not show through each other.
    QPixmap picture(size() * devicePixelRatioF());
    picture.setDevicePixelRatio(devicePixelRatioF());
    picture.fill(Qt::transparent);
    QPainter picturePainter(&picture);
    picturePainter.setRenderHint(QPainter::Antialiasing);
    paintInDesignPoints(picturePainter, *this);
    paint(picturePainter);
    picturePainter.end();
    painter.setOpacity(disabledOpacity);
    painter.drawPixmap(0, 0, picture);
}

void Control::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !isAvailable_ || !hitTest(event->pos())) {
        event->ignore();
        return;
    }
    press_.moveTo(1, motion::press);
}

void Control::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() & Qt::LeftButton) {
        press_.moveTo(hitTest(event->pos()) ? 1 : 0, motion::press);
    }
}

void Control::mouseReleaseEvent(QMouseEvent* event) {
    const bool isClick = event->button() == Qt::LeftButton && press_.target() > 0;
    press_.moveTo(0, motion::press);
    if (isClick && hitTest(event->pos())) {
        click();
    }
}

void Control::keyPressEvent(QKeyEvent* event) {
    const bool isPress =
        event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isPress) {
        event->ignore();
        return;
    }
    setShowsFocus(true);
    if (!event->isAutoRepeat()) {
        click();
    }
}

void Control::focusInEvent(QFocusEvent* event) {
    switch (event->reason()) {
        case Qt::TabFocusReason:
        case Qt::BacktabFocusReason:
        case Qt::ShortcutFocusReason:
            setShowsFocus(true);
            break;
        case Qt::ActiveWindowFocusReason:
        case Qt::PopupFocusReason:
            setShowsFocus(showsFocus_);
            break;
        default:
            setShowsFocus(false);
            break;
    }
}

void Control::focusOutEvent(QFocusEvent* event) {
    FocusRing::hideFrom(*this);
    const bool returns = event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason;
    if (!returns) {
        showsFocus_ = false;
        setEnabled(isAvailable_);
    }
}

void Control::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange) {
        if (!isEnabled()) {
            endHoverAndPress();
        }
        update();
    }
    View::changeEvent(event);
}

void Control::endHoverAndPress() {
    hover_.reset(0);
    press_.reset(0);
}

void Control::cancelPress() {
    press_.moveTo(0, motion::press);
}

void Control::moveFocusRing() {
    if (showsFocus_) {
        FocusRing::showOn(*this, *this);
    }
}

void Control::setShowsFocus(bool shows) {
    showsFocus_ = shows;
    if (shows) {
        FocusRing::showOn(*this, *this);
    } else {
        FocusRing::hideFrom(*this);
    }
}

}  // namespace kestro
