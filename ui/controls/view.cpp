#include "ui/controls/view.h"

#include "ui/controls/view_accessible.h"
#include "ui/paint/tooltip.h"

#include <QEvent>

namespace kestro {

View::View(QWidget* parent) : QWidget(parent) {
    installViewAccessibility();
}

void View::setHelp(const QString& help) {
    if (help != help_) {
        help_ = help;
        Tooltip::change(*this, help);
    }
}

AccessibleInfo View::accessibleInfo() const {
    AccessibleInfo info;
    info.name = accessibleName();
    info.description = accessibleDescription().isEmpty() ? help_ : accessibleDescription();
    return info;
}

void View::announceChecked() {
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

void View::announceValue() {
    const AccessibleInfo info = accessibleInfo();
    QAccessibleValueChangeEvent event(this, info.range ? QVariant(info.range->value) : QVariant(info.value));
    QAccessible::updateAccessibility(&event);
}

bool View::event(QEvent* event) {
    if (!help_.isEmpty()) {
        Tooltip::follow(*this, help_, *event);
    }
    return QWidget::event(event);
}

}  // namespace kestro
